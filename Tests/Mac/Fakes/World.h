// The Mac that the fakes make up: what a test arranges, what it lets happen, and what it sees.
//
// Threads: main thread only; fakes that answer on other threads take what they need with them.
// Lifetime: one at a time. Making one starts from a fresh Mac, destroying it ends the process unless everything that
// the application made is gone.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "Platform/Geometry.h"
#include "Tests/Mac/Fakes/Looks.h"

namespace fake {

// How the system is believed to behave, where nobody has seen it from here. The application has to end well both ways.
struct Beliefs {
  // When an item is chosen, the menu reports its end first, and the action comes after it. Believed from tracing other
  // programs' menus; AppKit's reference does not say.
  bool menuClosesBeforeAction = true;
  // `terminate:` ends the process by `exit`, and never comes back. AppKit's reference says so of an application whose
  // delegate has no objection; a test that goes on needs it to come back.
  bool terminateExits = false;
  // A stream holds its delegate weakly. ScreenCaptureKit's headers do not say of the initialiser's argument.
  bool streamHoldsDelegateWeakly = true;
  // A stream that captures is kept by the system until it ends.
  bool systemKeepsRunningStreams = true;
  // A pass of layout follows a change at once, not only at the end of the turn.
  bool laysOutAtOnce = false;
};

struct ScreenSetup {
  platform::Rect frame{{0, 0}, {1440, 900}};
  std::optional<std::uint32_t> number = 69;
  double scale = 2;
};

// As the capture service lists it: from the top-left corner of the primary screen, y down.
struct ServiceWindow {
  std::uint32_t number = 0;
  std::int64_t layer = 0;
  platform::Rect frame{{0, 0}, {1440, 900}};
  std::optional<std::string> owner;
  bool isOnScreen = true;
};

// How the capture service answers one kind of request.
struct Answering {
  std::optional<std::string> failure;
  bool failsWithoutError = false;  // of requests that may: neither a result nor an error
  bool isHeld = false;             // answers wait for `World::answerHeld`
};

struct Data {
  friend bool operator==(const Data&, const Data&) = default;
};
using Default = std::variant<bool, std::int64_t, double, std::string, Data>;

struct FileFailures {
  bool open = false;
  bool seek = false;
  bool write = false;
  bool close = false;
  bool whole = false;  // writing a whole file
  bool withoutReason = false;
};

// What a frame carries.
struct Frame {
  int number = 0;
  bool isValid = true;
  bool hasAttachments = true;
  bool isEmpty = false;    // attachments, but none
  bool isForeign = false;  // an attachment that is no dictionary
  bool isAudio = false;
  std::variant<std::monostate, std::int64_t, double, std::string> status = std::int64_t{0};
};

struct Files {
  std::mutex mutex;
  std::map<std::string, std::string> contents;
  std::set<std::string> directories;
  FileFailures failures;
  int openHandles = 0;
};

struct Capture {
  std::vector<std::uint32_t> displays{69};
  std::vector<ServiceWindow> windows;
  Answering content;
  Answering start;
  Answering stop;
  std::optional<std::string> outputFailure;
  std::vector<std::pair<bool, bool>> requests;  // excluding desktop windows, on-screen windows only
};

struct HotKeySetup {
  std::set<std::uint32_t> taken;  // key codes that another program holds
  bool refusesHandlers = false;
  bool givesNoReference = false;  // a success without a key
  bool idIsUnreadable = false;
};

class World {
 public:
  World();
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  // What a test arranges.
  Beliefs beliefs;
  std::vector<ScreenSetup> screens{ScreenSetup{}};
  std::optional<std::size_t> mainScreen = 0;
  platform::Point pointer{100, 100};
  bool captureAllowed = true;
  bool sessionSaysLocked = false;  // the window server of the session; notifications are posted apart from it
  bool hasSession = true;
  bool refusesPorts = false;         // as when the system keeps a port's name for another reason
  std::function<void()> beforePort;  // once, before the next port is made
  bool grantsOnRequest = false;
  Capture capture;
  HotKeySetup hotKeySetup;
  std::map<std::string, Default> defaults;
  Files files;
  std::map<std::string, std::string> environment;
  std::optional<std::string> bundleIdentifier = "org.quillfade.Quillfade";
  std::string home = "/Users/presenter";
  std::int64_t loginItemStatus = 0;
  std::optional<std::string> loginItemFailure;
  bool hasStatusButton = true;
  std::set<std::string> missingSymbols;
  std::vector<std::int64_t> alertAnswers;  // closed, as by its last button, without one
  std::function<void()> duringAlert;       // once

  // What a test lets happen. Each is one event of the main loop.
  void openMenu();
  void closeMenu();
  // Opens the menu and chooses the item, also one of a submenu.
  void choose(const std::string& title);
  bool pressHotKey(std::uint32_t code, std::uint32_t modifiers);
  // A press that carries no event.
  void deliverEmptyHotKeyEvent();
  void changeScreens();
  void postFromLoginWindow(const std::string& name);
  // To the key window, monitors first; true when anybody took it.
  bool pressKey(std::uint16_t code);
  void cancel();
  // In the application's space, to the topmost window there that takes clicks; a drag goes on in the same window.
  void mouseDown(platform::Point at);
  void mouseDragged(platform::Point at);
  void mouseUp(platform::Point at);
  void deliver(int stream, const Frame& frame);
  // A frame of a stream that has been stopped already.
  void deliverLate(int stream, const Frame& frame);
  void endStream(int stream, const std::string& why);
  void failRenderer();
  // Any bytes, as any program of the session can.
  void sendToPort(const std::string& name, const std::string& content);
  void answerHeld();
  void dropHeld();
  // Draws the views of all windows on the screen anew; what they drew, in words.
  std::vector<std::string> draw();

  // What a test sees.
  [[nodiscard]] std::optional<BarLook> bar() const;
  [[nodiscard]] std::vector<MenuLine> menu() const;
  [[nodiscard]] std::vector<WindowLook> windowsOnScreen() const;
  [[nodiscard]] int liveWindows() const;
  [[nodiscard]] std::vector<StreamLook> streams() const;
  [[nodiscard]] std::vector<int> runningStreams() const;
  [[nodiscard]] std::vector<HotKeyLook> hotKeys() const;
  [[nodiscard]] int hotKeyHandlers() const;
  [[nodiscard]] int monitors() const;
  [[nodiscard]] int statusItems() const;

  std::vector<AlertLook> alerts;
  std::vector<AboutLook> aboutPanels;
  std::vector<std::string> openedLinks;
  std::vector<int> policies;
  int activations = 0;
  int beeps = 0;  // for keys that nobody took
  int preflights = 0;
  int permissionRequests = 0;
  int takenPorts = 0;  // ports that were asked for under a name that another has
  bool isActive = false;
  bool isTerminated = false;
  std::vector<std::pair<std::string, Default>> defaultWrites;
  std::vector<std::int32_t> hotKeyStatuses;  // what the handlers answered to the last press

  // Runs inside the application's `run`, once it has finished launching.
  std::function<void()> script;
};

// The one there is.
[[nodiscard]] World& world();

// Runs the event in a pool of its own, and what it leads to.
void event(const std::function<void()>& work);
// Runs work in a pool.
void inPool(const std::function<void()>& work);

}  // namespace fake
