// One connection to the X server, and what is asked about it once: root window, extensions, picture formats, atoms.
//
// Threads: a connection belongs to one thread at a time.
// Ownership: non-movable, so that others may hold a reference. It closes with its owner, and all resources made on it
// go with it.
// Failure: an error of a request is either expected (and then named at the request, by `ignoreErrors` or by asking for
// the reply) or a bug, which reaches the handler of unexpected errors. A connection whose server is gone stays a valid
// object: `isBroken` is true, and requests do nothing.
#pragma once

#include <xcb/render.h>
#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <deque>
#include <expected>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Platform/Error.h"
#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::xcb {

// The extensions that the product needs.
enum class Extension : std::uint8_t { composite, damage, xfixes, render, randr, shape, sync };
inline constexpr std::size_t extensionCount = 7;

class Connection {
 public:
  // Called on the connection's thread, from inside `nextEvent`.
  using ErrorHandler = std::function<void(const xcb_generic_error_t&)>;

  // An empty name means the display named by the environment.
  static std::expected<std::unique_ptr<Connection>, Error> open(const std::string& displayName);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  [[nodiscard]] xcb_connection_t* get() const { return connection_; }
  [[nodiscard]] bool isBroken() const { return xcb_connection_has_error(connection_) != 0; }
  [[nodiscard]] int fileDescriptor() const { return xcb_get_file_descriptor(connection_); }
  void flush() { xcb_flush(connection_); }

  // Returns events only; errors go to the handler. `nextEvent` reads what has arrived and never blocks.
  // `nextQueuedEvent` takes what an earlier read left behind: drain it after every flush, and before waiting for the
  // descriptor.
  [[nodiscard]] Event nextEvent();
  [[nodiscard]] Event nextQueuedEvent();
  // By default an unexpected error is logged to standard error.
  void setUnexpectedErrorHandler(ErrorHandler handler) { unexpectedError_ = std::move(handler); }
  // Marks any error of this request as expected. Send the request by its plain function, not the `_checked` one: the
  // error of a checked request waits until somebody asks for it.
  void ignoreErrors(xcb_void_cookie_t request) { expectedErrors_.push_back(request.sequence); }
  // Waits until the server has carried out everything sent so far; false on timeout.
  bool synchronize(int milliseconds);

  [[nodiscard]] int screenNumber() const { return screenNumber_; }
  [[nodiscard]] xcb_window_t root() const { return screen_->root; }
  [[nodiscard]] std::uint8_t rootDepth() const { return screen_->root_depth; }
  [[nodiscard]] xcb_visualid_t rootVisual() const { return screen_->root_visual; }

  // All resources of one client share its base: `id & ~resourceMask()`.
  [[nodiscard]] std::uint32_t resourceBase() const { return setup_->resource_id_base; }
  [[nodiscard]] std::uint32_t resourceMask() const { return setup_->resource_id_mask; }
  [[nodiscard]] bool isServerOwned(std::uint32_t id) const { return (id & ~resourceMask()) == 0; }
  [[nodiscard]] std::uint32_t newId() { return xcb_generate_id(connection_); }

  [[nodiscard]] bool has(Extension extension) const { return extensions_[index(extension)].isUsable; }
  // The names of extensions that are missing or too old. A request of a missing extension would break the connection.
  [[nodiscard]] std::vector<std::string> missingExtensions() const;
  // The version of each extension that the server offers this client.
  struct ExtensionVersion {
    std::string name;
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    bool isPresent = false;
    bool isUsable = false;  // present and new enough
  };
  [[nodiscard]] std::vector<ExtensionVersion> extensionVersions() const;
  [[nodiscard]] std::uint8_t firstEvent(Extension extension) const { return extensions_[index(extension)].firstEvent; }

  // The picture format of a visual; 0 when no pictures can be made of it.
  [[nodiscard]] xcb_render_pictformat_t formatOfVisual(xcb_visualid_t visual) const;
  [[nodiscard]] bool visualHasAlpha(xcb_visualid_t visual) const;
  // The premultiplied 32-bit format with alpha, for pictures that we make.
  [[nodiscard]] xcb_render_pictformat_t argbFormat() const { return argbFormat_; }

  // Looked up once, then remembered. `internAtoms` looks up several in one round trip.
  [[nodiscard]] xcb_atom_t atom(std::string_view name);
  void internAtoms(std::span<const std::string_view> names);
  void internAtoms(std::initializer_list<std::string_view> names) {
    internAtoms(std::span(names.begin(), names.size()));
  }

  // Several users of one connection share the root window's event mask.
  void addRootEvents(std::uint32_t mask);
  void removeRootEvents(std::uint32_t mask);

 private:
  struct ExtensionState {
    bool isUsable = false;
    std::uint8_t firstEvent = 0;
    bool isPresent = false;
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
  };
  struct VisualFormat {
    xcb_render_pictformat_t format = 0;
    bool hasAlpha = false;
  };
  static constexpr std::size_t index(Extension extension) { return static_cast<std::size_t>(extension); }

  Connection(xcb_connection_t* connection, int screenNumber, xcb_screen_t* screen);
  void queryExtensions();
  void queryFormats();
  void selectRootEvents();
  [[nodiscard]] bool isExpected(const xcb_generic_event_t& error);
  Event withoutErrors(xcb_generic_event_t* (*next)(xcb_connection_t*));

  xcb_connection_t* connection_;
  int screenNumber_;
  const xcb_setup_t* setup_;
  xcb_screen_t* screen_;
  std::array<ExtensionState, extensionCount> extensions_{};
  std::unordered_map<xcb_visualid_t, VisualFormat> visualFormats_;
  xcb_render_pictformat_t argbFormat_ = 0;
  std::unordered_map<std::string, xcb_atom_t> atoms_;
  std::uint32_t rootEventMask_ = 0;
  // Requests that may fail, oldest first, kept until the server is known to be past them.
  std::deque<std::uint32_t> expectedErrors_;
  ErrorHandler unexpectedError_;
};

// One sentence for the user on why nothing can be captured. `missing` must not be empty.
[[nodiscard]] std::string missingExtensionsSentence(const std::vector<std::string>& missing);
// "A", "A and B", "A, B and C".
[[nodiscard]] std::string enumerated(const std::vector<std::string>& names);

inline constexpr const char* connectionLostSentence = "The connection to the display server was lost.";

}  // namespace platform::linux::xcb
