// A desktop of which two kinds exist: the simulated one that the rules are tested on, and the macOS adapter over its
// fakes. One set of scenes runs on both, so that they cannot drift apart.
//
// Threads: main thread only. Units: points of the application's own space.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace contract {

struct Line {
  std::string title;
  bool canBeChosen = false;
  bool hasCheckMark = false;
  friend bool operator==(const Line&, const Line&) = default;
};

struct Stream {
  std::uint32_t display = 0;
  std::vector<std::uint32_t> excluded;
  platform::Rect source;
  std::int64_t width = 0;
  std::int64_t height = 0;
  friend bool operator==(const Stream&, const Stream&) = default;
};

// The stages at which capturing can fail, or wait to be answered.
enum class Stage { content, output, start, stop };

class Desktop {
 public:
  virtual ~Desktop() = default;

  // What is arranged.
  virtual void arrangeScreens(const std::vector<platform::Screen>& screens) = 0;
  virtual void openWindows(const std::vector<platform::CaptureWindow>& windows) = 0;
  virtual void store(const std::string& key, const platform::SettingValue& value) = 0;
  virtual void allowCapture(bool isAllowed, bool isGrantedOnRequest = false) = 0;
  virtual void fail(Stage stage, std::optional<std::string> description) = 0;
  virtual void hold(Stage stage, bool isHeld) = 0;
  virtual void answerHeld() = 0;
  virtual void takeKey(std::uint32_t code) = 0;
  virtual void answerAlert(int response) = 0;
  virtual void refuseLoginItem(const std::string& description) = 0;
  virtual void setEnvironment(const std::string& name, const std::string& value) = 0;

  // Runs the application, and the scene within its event loop; the result is the exit status.
  virtual int run(const std::function<void()>& scene) = 0;

  // Hands out the ports, where no application runs.
  virtual void use(const std::function<void(platform::Platform&)>& test) = 0;

  // What happens.
  virtual void settle() = 0;
  virtual void advance(double seconds) = 0;
  virtual void openMenu() = 0;
  virtual void closeMenu() = 0;
  virtual void choose(const std::string& title) = 0;
  virtual bool pressHotKey(std::uint32_t code) = 0;
  virtual void setLocked(bool isLocked) = 0;
  virtual void announceScreens() = 0;
  virtual void pressEscape() = 0;
  virtual void drag(platform::Point from, platform::Point to) = 0;
  // From another process; returns when it is answered.
  virtual platform::RemoteReply command(const std::vector<std::string>& words) = 0;
  // Of the stream that was made last.
  virtual void deliver(std::int64_t status) = 0;
  virtual void endStream(const std::string& why) = 0;

  // What is seen.
  [[nodiscard]] virtual std::vector<Line> menu() const = 0;
  [[nodiscard]] virtual std::string icon() const = 0;
  [[nodiscard]] virtual std::string toolTip() const = 0;
  [[nodiscard]] virtual std::vector<platform::Rect> shownFrames() const = 0;
  [[nodiscard]] virtual std::string statusText() const = 0;  // of the first window; empty when it is hidden
  [[nodiscard]] virtual std::size_t framesShown() const = 0;
  [[nodiscard]] virtual std::vector<Stream> streams() const = 0;
  [[nodiscard]] virtual std::size_t runningStreams() const = 0;
  [[nodiscard]] virtual std::size_t timers() const = 0;
  [[nodiscard]] virtual std::optional<platform::SettingValue> stored(const std::string& key) const = 0;
  [[nodiscard]] virtual std::vector<std::string> log() const = 0;  // without time stamps
  [[nodiscard]] virtual std::optional<std::string> content(const std::string& pathBelowHome) const = 0;
  [[nodiscard]] virtual std::vector<std::string> alerts() const = 0;
  [[nodiscard]] virtual std::vector<std::string> aboutPanels() const = 0;  // the name that each shows
  [[nodiscard]] virtual std::vector<std::string> openedLinks() const = 0;
  [[nodiscard]] virtual bool isTerminated() const = 0;
};

std::unique_ptr<Desktop> makeSimulatedDesktop();
std::unique_ptr<Desktop> makeFakedMac();

// The lines of a log without their time stamps.
std::vector<std::string> messagesIn(const std::string& log);

}  // namespace contract
