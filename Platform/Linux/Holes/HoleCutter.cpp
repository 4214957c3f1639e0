#include "Platform/Linux/Holes/HoleCutter.h"

#include <xcb/shape.h>

#include <chrono>
#include <thread>
#include <utility>

#include "Platform/Linux/Xcb/Region.h"
#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::holes {

namespace {

constexpr xcb_render_color_t transparent{};

// Keeps other clients waiting, but not under Xwayland, which serves them all the same.
class ServerGrab {
 public:
  explicit ServerGrab(xcb::Connection& connection) : connection_(connection) { xcb_grab_server(connection_.get()); }
  ~ServerGrab() {
    xcb_ungrab_server(connection_.get());
    connection_.flush();
  }
  ServerGrab(const ServerGrab&) = delete;
  ServerGrab& operator=(const ServerGrab&) = delete;

 private:
  xcb::Connection& connection_;
};

PixelSet toPixelSet(const xcb_shape_get_rectangles_reply_t& reply) {
  const std::span rectangles(xcb_shape_get_rectangles_rectangles(&reply),
                             static_cast<std::size_t>(xcb_shape_get_rectangles_rectangles_length(&reply)));
  PixelSet set;
  for (const xcb_rectangle_t& rect : rectangles) set.push_back({rect.x, rect.y, rect.width, rect.height});
  return set;
}

xcb_shape_get_rectangles_cookie_t askForRectangles(const xcb::Connection& connection, xcb_window_t window) {
  return xcb_shape_get_rectangles(connection.get(), window, XCB_SHAPE_SK_BOUNDING);
}

std::vector<xcb_window_t> childrenOf(const xcb::Connection& connection, xcb_query_tree_cookie_t asked) {
  const auto tree = xcb::awaitReply(connection.get(), xcb_query_tree_reply, asked);
  if (!tree) return {};
  const xcb_window_t* first = xcb_query_tree_children(tree.get());
  return {first, first + xcb_query_tree_children_length(tree.get())};
}

// The top-level windows, and those inside them: a window may have gone into a frame with its hole.
std::vector<xcb_window_t> windowsOfScreen(const xcb::Connection& connection) {
  xcb_connection_t* c = connection.get();
  std::vector<xcb_window_t> windows = childrenOf(connection, xcb_query_tree(c, connection.root()));
  std::vector<xcb_query_tree_cookie_t> asked;
  for (const xcb_window_t window : windows) asked.push_back(xcb_query_tree(c, window));
  for (const auto& cookie : asked)
    for (const xcb_window_t child : childrenOf(connection, cookie)) windows.push_back(child);
  return windows;
}

}  // namespace

HoleCutter::HoleCutter(xcb::Connection& connection, std::uint32_t token) : connection_(connection), token_(token) {}

std::optional<HoleCutter::Look> HoleCutter::look(xcb_window_t window) {
  xcb_connection_t* c = connection_.get();
  const auto geometryCookie = xcb_get_geometry(c, window);
  const auto attributesCookie = xcb_get_window_attributes(c, window);
  const auto extentsCookie = xcb_shape_query_extents(c, window);
  const auto rectanglesCookie = askForRectangles(connection_, window);
  const auto geometry = xcb::awaitReply(c, xcb_get_geometry_reply, geometryCookie);
  const auto attributes = xcb::awaitReply(c, xcb_get_window_attributes_reply, attributesCookie);
  const auto extents = xcb::awaitReply(c, xcb_shape_query_extents_reply, extentsCookie);
  const auto rectangles = xcb::awaitReply(c, xcb_shape_get_rectangles_reply, rectanglesCookie);
  if (!geometry || !attributes || !extents || !rectangles) return std::nullopt;
  const int border = geometry->border_width;
  Look look{.shape = std::nullopt,
            .bounds = {-border, -border, geometry->width + 2 * border, geometry->height + 2 * border},
            .size = {0, 0, geometry->width, geometry->height},
            .depth = geometry->depth,
            .format = connection_.formatOfVisual(attributes->visual),
            .hasAlpha = connection_.visualHasAlpha(attributes->visual)};
  if (extents->bounding_shaped != 0) look.shape = toPixelSet(*rectangles);
  return look;
}

void HoleCutter::setShape(xcb_window_t window, const PixelSet& shape) {
  const auto rectangles = toRectangles(shape);
  connection_.ignoreErrors(xcb_shape_rectangles(connection_.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                                                XCB_CLIP_ORDERING_UNSORTED, window, 0, 0,
                                                static_cast<std::uint32_t>(rectangles.size()), rectangles.data()));
}

void HoleCutter::write(xcb_window_t window, const Hole& hole) {
  const auto values = written(hole, token_);
  connection_.ignoreErrors(xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window,
                                               connection_.atom(holeProperty), XCB_ATOM_CARDINAL, 32,
                                               static_cast<std::uint32_t>(values.size()), values.data()));
}

void HoleCutter::erase(xcb_window_t window) {
  connection_.ignoreErrors(xcb_delete_property(connection_.get(), window, connection_.atom(holeProperty)));
}

// Changes no pixel but announces a change, so that a compositor looks again.
void HoleCutter::nudge(xcb_window_t window, const Look& look) {
  if (look.format == 0) return;
  xcb_connection_t* c = connection_.get();
  const xcb_render_picture_t picture = connection_.newId();
  const std::uint32_t inferiors = XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS;
  const xcb_rectangle_t all = xcb::toRectangle(look.bounds);
  connection_.ignoreErrors(
      xcb_render_create_picture(c, picture, window, look.format, XCB_RENDER_CP_SUBWINDOW_MODE, &inferiors));
  connection_.ignoreErrors(xcb_render_fill_rectangles(c, XCB_RENDER_PICT_OP_OVER, picture, transparent, 1, &all));
  connection_.ignoreErrors(xcb_render_free_picture(c, picture));
}

std::expected<std::optional<Hole>, Error> HoleCutter::cut(const std::optional<Hole>& before,
                                                          const HoleBook::Step& step) {
  xcb_shape_get_rectangles_cookie_t cookie{};
  Hole hole;
  {
    const ServerGrab grab(connection_);
    const auto now = look(step.window);
    if (!now) return lostOrGone();
    if (step.isForReshaped && before && stands(*before, now->shape)) return before;
    hole = {.own = ownShape(now->shape, before), .areas = step.areas};
    write(step.window, hole);
    const auto patch = step.clears ? clear(hole, step.window, *now) : nullptr;
    setShape(step.window, pierced(hole));
    nudge(step.window, *now);
    cookie = askForRectangles(connection_, step.window);
  }
  const auto reply = xcb::awaitReply(connection_.get(), xcb_shape_get_rectangles_reply, cookie);
  if (!reply) return lostOrGone();
  if (!holdSame(toPixelSet(*reply), pierced(hole)))
    return std::unexpected(Error{"The display server does not let the ink be taken away."});
  return hole;
}

std::expected<std::optional<Hole>, Error> HoleCutter::lostOrGone() const {
  if (connection_.isBroken()) return std::unexpected(Error{xcb::connectionLostSentence});
  return std::nullopt;
}

// Nothing can be painted where the window is not: so it is whole again for that long. Its program is told of that and
// may draw at once, but not where the patch lies. Without an alpha channel there is no colour to see through.
std::unique_ptr<Patch> HoleCutter::clear(const Hole& hole, xcb_window_t window, const Look& now) {
  const PixelSet areas = common(hole.areas, now.size);
  if (!now.hasAlpha || areas.empty()) return nullptr;
  // The copy is made before anything is cleared, and what was cleared once is in it.
  auto& copy = copies_[window];
  if (!copy || !copy->fits(now.size)) copy = std::make_unique<InkCopy>(connection_, window, now.depth, now.size);
  copy->unwatch();
  auto patch = std::make_unique<Patch>(connection_, window, now.size, areas);
  if (now.shape) setShape(window, hole.own.value_or(PixelSet{largestShape}));
  return patch;
}

std::optional<Hole> HoleCutter::mend(xcb_window_t window, const Hole& hole) {
  const ServerGrab grab(connection_);
  const auto now = look(window);
  if (!now || !stands(hole, now->shape)) {
    if (now) erase(window);
    forget(window);
    return std::nullopt;
  }
  Hole rest{.own = hole.own, .areas = {}};
  if (!rest.own) rest.areas = without({largestShape}, PixelSet{now->bounds});
  write(window, rest);
  setShape(window, pierced(rest));
  nudge(window, *now);
  const auto copy = copies_.find(window);
  if (copy != copies_.end() && copy->second->fits(now->size)) copy->second->watch(hole.areas);
  return rest;
}

void HoleCutter::finish(xcb_window_t window, const Hole& hole) {
  const auto copy = copies_.extract(window);
  const ServerGrab grab(connection_);
  const auto now = look(window);
  if (!now) return;
  if (!hole.own && stands(hole, now->shape)) {
    connection_.ignoreErrors(
        xcb_shape_mask(connection_.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window, 0, 0, XCB_PIXMAP_NONE));
  }
  erase(window);
  if (copy && copy.mapped()->fits(now->size)) copy.mapped()->bringBack();
  nudge(window, *now);
}

std::vector<HoledWindow> holedWindows(xcb::Connection& connection) {
  xcb_connection_t* c = connection.get();
  constexpr std::uint32_t everything = 0x1FFFFFFF;
  std::vector<std::pair<xcb_window_t, xcb_get_property_cookie_t>> asked;
  const xcb_atom_t atom = connection.atom(holeProperty);
  for (const xcb_window_t window : windowsOfScreen(connection))
    asked.emplace_back(window, xcb_get_property(c, 0, window, atom, XCB_ATOM_CARDINAL, 0, everything));
  std::vector<HoledWindow> found;
  for (const auto& [window, cookie] : asked) {
    const auto reply = xcb::awaitReply(c, xcb_get_property_reply, cookie);
    if (!reply || reply->format != 32) continue;
    const std::span values(static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get())),
                           static_cast<std::size_t>(xcb_get_property_value_length(reply.get())) / 4);
    if (auto hole = readHole(values)) found.push_back({window, std::move(*hole)});
  }
  return found;
}

void closeLeftHoles(xcb::Connection& connection, const std::optional<std::uint32_t>& token) {
  std::vector<std::pair<xcb_window_t, Hole>> halfway;
  for (const auto& [window, written] : holedWindows(connection)) {
    if (token && written.token != *token) continue;
    HoleCutter cutter(connection, written.token);
    // A hole that was not made to its end may have been cleared already: only what comes back is drawn again.
    const auto hole = cutter.cut(written.hole, {.window = window, .areas = written.hole.areas, .isForReshaped = true});
    if (!hole || !*hole) continue;
    if (auto rest = cutter.mend(window, **hole)) halfway.emplace_back(window, std::move(*rest));
  }
  if (!halfway.empty()) std::this_thread::sleep_for(timeForCompositors);
  for (const auto& [window, hole] : halfway) HoleCutter(connection, 0).finish(window, hole);
  finishRequests(connection);
}

void finishRequests(xcb::Connection& connection) {
  constexpr int patience = 2000;  // milliseconds
  (void)connection.synchronize(patience);
}

}  // namespace platform::linux::holes
