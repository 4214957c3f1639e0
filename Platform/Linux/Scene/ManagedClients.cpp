#include "Platform/Linux/Scene/ManagedClients.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace platform::linux::scene {

namespace {

// A frame with wrappers has few other children. A window with more is a toolkit's that gives every button a window.
constexpr std::size_t mostWrappers = 16;

class Children {
 public:
  Children(xcb::Connection& connection, xcb_window_t parent)
      : connection_(connection), parent_(parent), cookie_(xcb_query_tree(connection.get(), parent)) {}

  [[nodiscard]] std::vector<xcb_window_t> collect() {
    const auto reply = xcb::awaitReply(connection_.get(), xcb_query_tree_reply, cookie_);
    if (!reply) return {};
    const std::span children(xcb_query_tree_children(reply.get()),
                             static_cast<std::size_t>(xcb_query_tree_children_length(reply.get())));
    return {children.begin(), children.end()};
  }
  [[nodiscard]] xcb_window_t parent() const { return parent_; }

 private:
  xcb::Connection& connection_;
  xcb_window_t parent_;
  xcb_query_tree_cookie_t cookie_;
};

// The topmost of these windows that belongs to another client than the top-level does.
xcb_window_t foreignOne(xcb::Connection& connection, xcb_window_t topLevel, const std::vector<xcb_window_t>& windows) {
  const std::uint32_t mask = connection.resourceMask();
  const auto found = std::find_if(windows.rbegin(), windows.rend(),
                                  [&](xcb_window_t window) { return (window & ~mask) != (topLevel & ~mask); });
  return found == windows.rend() ? noClient : *found;
}

}  // namespace

std::vector<xcb_window_t> managedClients(xcb::Connection& connection, std::span<const xcb_window_t> topLevels) {
  std::vector<Children> frames;
  for (const xcb_window_t topLevel : topLevels) frames.emplace_back(connection, topLevel);

  std::vector<xcb_window_t> inside;
  std::vector<std::pair<std::size_t, Children>> wrappers;
  for (Children& frame : frames) {
    const auto children = frame.collect();
    inside.push_back(foreignOne(connection, frame.parent(), children));
    if (inside.back() != noClient || children.size() > mostWrappers) continue;
    for (const xcb_window_t child : children) wrappers.emplace_back(inside.size() - 1, Children(connection, child));
  }
  for (auto& [index, wrapper] : wrappers) {
    const xcb_window_t found = foreignOne(connection, topLevels[index], wrapper.collect());
    if (found != noClient) inside[index] = found;
  }
  return inside;
}

}  // namespace platform::linux::scene
