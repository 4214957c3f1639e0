#include "Platform/Linux/Scene/Scene.h"

#include <xcb/shape.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

#include <string>

namespace platform::linux::scene {

namespace {

WindowGeometry geometryOf(int x, int y, int width, int height, int border) {
  return {{x, y, width + 2 * border, height + 2 * border}, border};
}

}  // namespace

Scene::Scene(xcb::Connection& connection) : connection_(connection) {
  compositingManagerSelection_ = connection_.atom("_NET_WM_CM_S" + std::to_string(connection_.screenNumber()));
  build();
}

Scene::~Scene() {
  xcb_connection_t* c = connection_.get();
  connection_.removeRootEvents(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  if (connection_.has(xcb::Extension::xfixes))
    xcb_xfixes_select_selection_input(c, connection_.root(), compositingManagerSelection_, 0);
  if (connection_.has(xcb::Extension::shape)) {
    // The window may be gone.
    for (const SceneWindow& window : windows()) connection_.ignoreErrors(xcb_shape_select_input(c, window.id, 0));
  }
  for (const Query& query : queries_) xcb_discard_reply(c, query.sequence);
  // The connection may live on without a reader; then no event must fill it up.
  connection_.flush();
}

void Scene::build() {
  xcb_connection_t* c = connection_.get();
  connection_.addRootEvents(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  if (connection_.has(xcb::Extension::xfixes))
    xcb_xfixes_select_selection_input(c, connection_.root(), compositingManagerSelection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  const auto treeCookie = xcb_query_tree(c, connection_.root());
  const auto ownerCookie = xcb_get_selection_owner(c, compositingManagerSelection_);
  treeSequence_ = treeCookie.sequence;

  if (const auto tree = xcb::awaitReply(c, xcb_query_tree_reply, treeCookie)) {
    const std::span children(xcb_query_tree_children(tree.get()),
                             static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    for (const xcb_window_t child : children)
      if (!connection_.isServerOwned(child)) model_.adopt(child);
  }
  const auto owner = xcb::awaitReply(c, xcb_get_selection_owner_reply, ownerCookie);
  model_.compositingManagerIs(owner ? owner->owner : XCB_NONE);

  describeStubs();
  while (collectReply(true)) {
  }
}

void Scene::describeStubs() {
  xcb_connection_t* c = connection_.get();
  for (const SceneModel::Stub& stub : model_.takeStubs()) {
    queries_.push_back({Part::attributes, stub, xcb_get_window_attributes(c, stub.id).sequence});
    queries_.push_back({Part::geometry, stub, xcb_get_geometry(c, stub.id).sequence});
    if (!connection_.has(xcb::Extension::shape)) {
      model_.describeShape(stub, false);
      continue;
    }
    connection_.ignoreErrors(xcb_shape_select_input(c, stub.id, 1));
    queries_.push_back({Part::shape, stub, xcb_shape_query_extents(c, stub.id).sequence});
  }
}

bool Scene::collectReply(bool mayBlock) {
  if (queries_.empty()) return false;
  const Query query = queries_.front();
  void* reply = nullptr;
  xcb_generic_error_t* error = nullptr;
  if (mayBlock) {
    reply = xcb_wait_for_reply(connection_.get(), query.sequence, &error);
  } else if (xcb_poll_for_reply(connection_.get(), query.sequence, &reply, &error) == 0) {
    return false;
  }
  const xcb::Reply<void> ownedReply(reply);
  const xcb::Reply<xcb_generic_error_t> ownedError(error);
  queries_.pop_front();
  // Without a reply the window is gone, and its DestroyNotify is on the way.
  if (reply != nullptr) apply(query, reply);
  return true;
}

bool Scene::collectReplies() {
  bool isAny = false;
  while (collectReply(false)) isAny = true;
  return isAny;
}

void Scene::apply(const Query& query, const void* reply) {
  switch (query.part) {
    case Part::attributes: {
      const auto& attributes = *static_cast<const xcb_get_window_attributes_reply_t*>(reply);
      return model_.describeAttributes(
          query.window, {attributes.visual, attributes._class == XCB_WINDOW_CLASS_INPUT_ONLY,
                         attributes.override_redirect != 0, attributes.map_state == XCB_MAP_STATE_VIEWABLE});
    }
    case Part::geometry: {
      const auto& geometry = *static_cast<const xcb_get_geometry_reply_t*>(reply);
      return model_.describeGeometry(
          query.window, geometryOf(geometry.x, geometry.y, geometry.width, geometry.height, geometry.border_width),
          geometry.depth);
    }
    case Part::shape:
      return model_.describeShape(query.window,
                                  static_cast<const xcb_shape_query_extents_reply_t*>(reply)->bounding_shaped != 0);
  }
}

// A reply describes the moment when the server sent it, so later events must be handled after it. Earlier events do no
// harm: the last of them says what the reply says.
void Scene::collectRepliesBefore(std::uint32_t sequence) {
  // These replies have arrived: they are older than an event that has.
  while (!queries_.empty() && xcb::isNotAfter(queries_.front().sequence, sequence) && collectReply(false)) {
  }
}

void Scene::handle(const xcb_generic_event_t& event) {
  if (xcb::isSentByClient(event)) return;
  if (treeSequence_) {
    // What happened before the list of windows was read is already in the list.
    if (!xcb::isNotAfter(*treeSequence_, event.full_sequence)) return;
    treeSequence_.reset();
  }
  collectRepliesBefore(event.full_sequence);
  handleCore(event);
  handleExtension(event);
  describeStubs();
}

// Whether an event is about a top-level window. An unknown one is adopted.
bool Scene::concerns(xcb_window_t parent, xcb_window_t window) {
  if (parent != connection_.root() || connection_.isServerOwned(window)) return false;
  model_.adopt(window);
  return true;
}

void Scene::handleCore(const xcb_generic_event_t& event) {
  switch (xcb::eventType(event)) {
    case XCB_CREATE_NOTIFY: {
      const auto& created = xcb::eventAs<xcb_create_notify_event_t>(event);
      if (created.parent != connection_.root() || connection_.isServerOwned(created.window)) return;
      return model_.created(created.window,
                            geometryOf(created.x, created.y, created.width, created.height, created.border_width),
                            created.override_redirect != 0);
    }
    case XCB_DESTROY_NOTIFY: {
      const auto& destroyed = xcb::eventAs<xcb_destroy_notify_event_t>(event);
      if (destroyed.event == connection_.root()) model_.removed(destroyed.window, Departure::destroyed);
      return;
    }
    case XCB_MAP_NOTIFY: {
      const auto& mapped = xcb::eventAs<xcb_map_notify_event_t>(event);
      if (concerns(mapped.event, mapped.window)) model_.mapped(mapped.window, mapped.override_redirect != 0);
      return;
    }
    case XCB_UNMAP_NOTIFY: {
      const auto& unmapped = xcb::eventAs<xcb_unmap_notify_event_t>(event);
      if (concerns(unmapped.event, unmapped.window)) model_.unmapped(unmapped.window);
      return;
    }
    case XCB_GRAVITY_NOTIFY: {
      const auto& moved = xcb::eventAs<xcb_gravity_notify_event_t>(event);
      if (concerns(moved.event, moved.window)) model_.moved(moved.window, moved.x, moved.y);
      return;
    }
    case XCB_CIRCULATE_NOTIFY: {
      const auto& circulated = xcb::eventAs<xcb_circulate_notify_event_t>(event);
      if (!concerns(circulated.event, circulated.window)) return;
      if (circulated.place == XCB_PLACE_ON_TOP) return model_.raised(circulated.window);
      return model_.restacked(circulated.window, std::nullopt);
    }
    case XCB_CONFIGURE_NOTIFY:
      return handleConfigure(xcb::eventAs<xcb_configure_notify_event_t>(event));
    case XCB_REPARENT_NOTIFY:
      return handleReparent(xcb::eventAs<xcb_reparent_notify_event_t>(event));
    default:
      return;
  }
}

void Scene::handleConfigure(const xcb_configure_notify_event_t& event) {
  if (event.window == connection_.root() || !concerns(event.event, event.window)) return;
  model_.configured(event.window, geometryOf(event.x, event.y, event.width, event.height, event.border_width),
                    event.override_redirect != 0);
  if (event.above_sibling == XCB_NONE) return model_.restacked(event.window, std::nullopt);
  // The server's own windows stay on top of all others.
  if (!connection_.isServerOwned(event.above_sibling)) model_.adopt(event.above_sibling);
  model_.restacked(event.window, event.above_sibling);
}

void Scene::handleReparent(const xcb_reparent_notify_event_t& event) {
  if (event.event != connection_.root()) return;
  model_.removed(event.window, Departure::reparented);
  if (event.parent != connection_.root() || connection_.isServerOwned(event.window)) return;
  // The event does not tell the size; the reply to the query that follows does.
  model_.created(event.window, geometryOf(event.x, event.y, 0, 0, 0), event.override_redirect != 0);
}

void Scene::handleExtension(const xcb_generic_event_t& event) {
  if (connection_.has(xcb::Extension::shape) &&
      xcb::eventType(event) == connection_.firstEvent(xcb::Extension::shape) + XCB_SHAPE_NOTIFY) {
    const auto& shape = xcb::eventAs<xcb_shape_notify_event_t>(event);
    if (shape.shape_kind == XCB_SHAPE_SK_BOUNDING) model_.reshaped(shape.affected_window, shape.shaped != 0);
  } else if (connection_.has(xcb::Extension::xfixes) &&
             xcb::eventType(event) == connection_.firstEvent(xcb::Extension::xfixes) + XCB_XFIXES_SELECTION_NOTIFY) {
    const auto& selection = xcb::eventAs<xcb_xfixes_selection_notify_event_t>(event);
    if (selection.selection == compositingManagerSelection_) model_.compositingManagerIs(selection.owner);
  }
}

}  // namespace platform::linux::scene
