// The top-level windows of an X screen in stacking order, built once and then kept current from events alone.
//
// Threads: that of its connection. The scene has no thread of its own: whoever reads the connection passes every event
// to `handle` and calls `collectReplies` after each batch, before it waits again. Units and axes: device pixels in root
// coordinates, y down. Ownership: it keeps a reference to the connection and to its listeners; the connection
// must outlive it. One scene per connection. Destroying it ends its event selections. Failure: with a broken connection
// the scene is empty or stays as it is. Requests about windows that are gone fail silently; their DestroyNotify
// follows.
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

  // Each must be removed before it goes.
  void addListener(SceneListener& listener) { model_.addListener(listener); }
  void removeListener(SceneListener& listener) { model_.removeListener(listener); }

  // Bottom to top, unmapped and input-only windows included; windows of the server itself are never among them. Valid
  // until the next event.
  [[nodiscard]] std::span<const SceneWindow> windows() const { return model_.windows(); }
  [[nodiscard]] const SceneWindow* find(xcb_window_t id) const { return model_.find(id); }
  // Whether a compositing manager owns this screen's selection.
  [[nodiscard]] bool hasCompositingManager() const { return model_.hasCompositingManager(); }
  // The window by which it does; none without one.
  [[nodiscard]] xcb_window_t compositingManager() const { return model_.compositingManager(); }

  // Takes in an event that concerns it and ignores all others.
  void handle(const xcb_generic_event_t& event);
  // Takes in the answers that have arrived; false when there were none. Never blocks.
  bool collectReplies();

 private:
  enum class Part : std::uint8_t { attributes, geometry, shape };
  // A question about one window that is under way.
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
