// The properties of one window as its program or its window manager set them: read in bulk and decoded defensively,
// since any client can write anything there.
//
// Threads: that of the connection. Ownership: a request that is not collected discards its replies.
// Failure: a property that is missing, too short, or of another type or format counts as not set; of a property that is
// too long only the beginning counts. A window that is gone has no properties.
#pragma once

#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/Linux/Scene/WindowProperties.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::scene {

struct ClientProperties {
  std::string instanceName;  // raw bytes
  std::string className;
  std::vector<WindowType> types;  // the known ones, in the window's order
  WindowState state;
  bool isManaged = false;                     // has the state that a window manager sets on the windows it manages
  bool hasFixedSize = false;                  // its minimum size is its maximum size
  std::optional<bool> hasDecorations;         // absent when no property says
  std::optional<std::uint32_t> processId;     // as claimed by the program
  bool hasShape = false;                      // bounding
  bool hasEmptyInput = false;                 // every click passes through
  std::vector<std::uint32_t> productClients;  // resource bases, if the window is the mark of a process of this product
};

// The atoms needed to read and to understand the properties.
struct PropertyAtoms {
  static constexpr std::size_t count = 9;

  // Looks up all of them in one round trip.
  explicit PropertyAtoms(xcb::Connection& connection);
  // With atoms from somewhere else than a connection.
  explicit PropertyAtoms(const std::function<xcb_atom_t(std::string_view)>& atom);
  // Whether a change of this property matters here.
  [[nodiscard]] bool watches(xcb_atom_t property) const;

  std::array<xcb_atom_t, count> properties{};
  std::vector<std::pair<xcb_atom_t, WindowType>> types;
  xcb_atom_t above;
  xcb_atom_t below;
  xcb_atom_t fullScreen;
  xcb_atom_t maximizedVertically;
  xcb_atom_t maximizedHorizontally;
};

// The replies in the order of `PropertyAtoms::properties`; null where there is none. Their content may be anything.
using PropertyReplies = std::array<const xcb_get_property_reply_t*, PropertyAtoms::count>;
[[nodiscard]] ClientProperties decodeProperties(const PropertyAtoms& atoms, const PropertyReplies& replies);

class ClientPropertiesRequest {
 public:
  // Sends the requests without waiting. The atoms must outlive it.
  ClientPropertiesRequest(xcb::Connection& connection, const PropertyAtoms& atoms, xcb_window_t window);
  ~ClientPropertiesRequest();
  ClientPropertiesRequest(ClientPropertiesRequest&& other) noexcept;
  ClientPropertiesRequest& operator=(ClientPropertiesRequest&&) = delete;

  // Waits for the replies. Call it once.
  [[nodiscard]] ClientProperties collect();

 private:
  xcb::Connection& connection_;
  const PropertyAtoms& atoms_;
  std::array<xcb_get_property_cookie_t, PropertyAtoms::count> properties_{};
  std::optional<xcb_shape_query_extents_cookie_t> shape_;
  std::optional<xcb_shape_get_rectangles_cookie_t> input_;
  bool isPending_ = true;
};

}  // namespace platform::linux::scene
