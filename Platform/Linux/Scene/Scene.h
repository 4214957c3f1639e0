// The top-level windows of an X screen in stacking order, read once and then kept current from events alone.
//
// Threads: that of its connection. The scene has no thread of its own: whoever reads the connection passes every event
// to `handle` and calls `collectReplies` after each batch, before it waits again.
// Units and axes: device pixels in root coordinates, y down.
// Ownership: keeps references to the connection, which must outlive it, and to its listeners. One scene per connection.
// Destroying it ends its event selections.
// Failure: with a broken connection the scene is empty or stays as it is. Requests about windows that are gone fail
// silently; their DestroyNotify follows.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <deque>
#include <optional>
#include <span>

#include "Platform/Linux/Scene/SceneModel.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::scene {

class Scene {
 public:
  // Waits for the server twice, however many windows there are. Listeners hear of later changes only.
  explicit Scene(xcb::Connection& connection);
  ~Scene();
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  // Remove each listener before it is destroyed.
  void addListener(SceneListener& listener) { model_.addListener(listener); }
  void removeListener(SceneListener& listener) { model_.removeListener(listener); }

  // Bottom to top, including unmapped and input-only windows, but never the server's own. Valid until the next event.
  [[nodiscard]] std::span<const SceneWindow> windows() const { return model_.windows(); }
  [[nodiscard]] const SceneWindow* find(xcb_window_t id) const { return model_.find(id); }
  // Whether a compositing manager owns this screen's selection.
  [[nodiscard]] bool hasCompositingManager() const { return model_.hasCompositingManager(); }
  // The window that owns the selection; none without a compositing manager.
  [[nodiscard]] xcb_window_t compositingManager() const { return model_.compositingManager(); }

  // Handles an event that concerns the scene and ignores all others.
  void handle(const xcb_generic_event_t& event);
  // Handles the replies that have arrived; false when there were none. Never blocks.
  bool collectReplies();

 private:
  enum class Part : std::uint8_t { attributes, geometry, shape };
  // A pending query about one window.
  struct Query {
    Part part = Part::attributes;
    SceneModel::Stub window;
    std::uint32_t sequence = 0;
  };
  void build();
  void describeStubs();
  bool collectReply(bool mayBlock);
  void apply(const Query& query, const void* reply);
  void collectRepliesBefore(std::uint32_t sequence);
  void handleCore(const xcb_generic_event_t& event);
  void handleConfigure(const xcb_configure_notify_event_t& event);
  void handleReparent(const xcb_reparent_notify_event_t& event);
  void handleExtension(const xcb_generic_event_t& event);
  [[nodiscard]] bool concerns(xcb_window_t parent, xcb_window_t window);

  xcb::Connection& connection_;
  SceneModel model_;
  xcb_atom_t compositingManagerSelection_ = 0;
  std::optional<std::uint32_t> treeSequence_;
  std::deque<Query> queries_;
};

}  // namespace platform::linux::scene
