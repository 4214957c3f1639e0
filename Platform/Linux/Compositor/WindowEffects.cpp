#include "Platform/Linux/Compositor/WindowEffects.h"

#include <array>
#include <cstring>
#include <utility>

#include "Platform/Linux/Scene/ManagedClients.h"

namespace platform::linux::compositor {

namespace {

constexpr xcb_window_t none = XCB_WINDOW_NONE;

template <std::size_t count>
std::optional<std::array<std::uint32_t, count>> numbersOf(const xcb_get_property_reply_t* reply) {
  std::array<std::uint32_t, count> numbers{};
  if (reply == nullptr || reply->format != 32 ||
      xcb_get_property_value_length(reply) < static_cast<int>(sizeof(numbers)))
    return std::nullopt;
  std::memcpy(numbers.data(), xcb_get_property_value(reply), sizeof(numbers));
  return numbers;
}

// All queries about one top-level and the window inside it, sent at once.
class Question {
 public:
  Question(xcb::Connection& connection, xcb_window_t topLevel, xcb_window_t inner, xcb_atom_t opacity,
           xcb_atom_t extents)
      : connection_(connection.get()),
        topLevel_(topLevel),
        hasInner_(inner != none),
        opacity_(property(topLevel, opacity, 1)),
        outer_(xcb_get_geometry(connection_, topLevel)) {
    if (!hasInner_) return;
    innerOpacity_ = property(inner, opacity, 1);
    extents_ = property(inner, extents, 4);
    innerGeometry_ = xcb_get_geometry(connection_, inner);
    place_ = xcb_translate_coordinates(connection_, inner, topLevel, 0, 0);
  }

  // Call it once.
  [[nodiscard]] WindowEffects::Known answer() {
    WindowEffect effect;
    auto opacity = numbersOf<1>(xcb::awaitReply(connection_, xcb_get_property_reply, opacity_).get());
    const auto outer = xcb::awaitReply(connection_, xcb_get_geometry_reply, outer_);
    if (hasInner_) {
      const auto innerOpacity = numbersOf<1>(xcb::awaitReply(connection_, xcb_get_property_reply, innerOpacity_).get());
      if (!opacity) opacity = innerOpacity;
      effect.visiblePart = visiblePart(outer.get());
    }
    if (opacity) effect.opacity = opacity->front();
    return {topLevel_, effect};
  }

 private:
  [[nodiscard]] xcb_get_property_cookie_t property(xcb_window_t window, xcb_atom_t name, std::uint32_t length) const {
    return xcb_get_property(connection_, 0, window, name, XCB_ATOM_CARDINAL, 0, length);
  }

  [[nodiscard]] std::optional<xcb::PixelRect> visiblePart(const xcb_get_geometry_reply_t* outer) const {
    const auto extents = numbersOf<4>(xcb::awaitReply(connection_, xcb_get_property_reply, extents_).get());
    const auto inner = xcb::awaitReply(connection_, xcb_get_geometry_reply, innerGeometry_);
    const auto place = xcb::awaitReply(connection_, xcb_translate_coordinates_reply, place_);
    if (outer == nullptr || !extents || !inner || !place) return std::nullopt;
    // A nonsense value could be of any size.
    constexpr std::uint32_t largest = 32767;
    for (const std::uint32_t extent : *extents)
      if (extent > largest) return std::nullopt;
    const auto extent = [&](std::size_t side) { return static_cast<std::int32_t>((*extents)[side]); };
    const std::int32_t border = outer->border_width;
    const xcb::PixelRect whole{0, 0, outer->width + 2 * border, outer->height + 2 * border};
    const xcb::PixelRect part{border + place->dst_x - extent(0), border + place->dst_y - extent(2),
                              extent(0) + inner->width + 2 * inner->border_width + extent(1),
                              extent(2) + inner->height + 2 * inner->border_width + extent(3)};
    const xcb::PixelRect seen = intersection(part, whole);
    if (seen.isEmpty() || seen == whole) return std::nullopt;
    return seen;
  }

  xcb_connection_t* connection_;
  xcb_window_t topLevel_;
  bool hasInner_;
  xcb_get_property_cookie_t opacity_;
  xcb_get_geometry_cookie_t outer_;
  xcb_get_property_cookie_t innerOpacity_{};
  xcb_get_property_cookie_t extents_{};
  xcb_get_geometry_cookie_t innerGeometry_{};
  xcb_translate_coordinates_cookie_t place_{};
};

}  // namespace

WindowEffects::WindowEffects(xcb::Connection& connection) : connection_(connection) {
  connection_.internAtoms({"_NET_WM_WINDOW_OPACITY", "_NET_FRAME_EXTENTS"});
  opacity_ = connection_.atom("_NET_WM_WINDOW_OPACITY");
  frameExtents_ = connection_.atom("_NET_FRAME_EXTENTS");
}

// The connection may live on without a reader; then no event must fill it up.
WindowEffects::~WindowEffects() {
  while (!followed_.empty()) forget(followed_.begin()->first);
}

void WindowEffects::follow(xcb_window_t topLevel) {
  if (followed_.try_emplace(topLevel).second) select(topLevel, XCB_EVENT_MASK_PROPERTY_CHANGE);
}

void WindowEffects::forget(xcb_window_t topLevel) {
  const auto found = followed_.find(topLevel);
  if (found == followed_.end()) return;
  select(topLevel, 0);
  if (found->second.inner != none) select(found->second.inner, 0);
  topLevelOf_.erase(found->second.inner);
  followed_.erase(found);
}

// The window may be gone.
void WindowEffects::select(xcb_window_t window, std::uint32_t events) {
  connection_.ignoreErrors(xcb_change_window_attributes(connection_.get(), window, XCB_CW_EVENT_MASK, &events));
}

std::optional<xcb_window_t> WindowEffects::followedWith(xcb_window_t window) const {
  if (followed_.contains(window)) return window;
  const auto found = topLevelOf_.find(window);
  if (found == topLevelOf_.end()) return std::nullopt;
  return found->second;
}

std::optional<xcb_window_t> WindowEffects::changedBy(const xcb_generic_event_t& event) {
  std::optional<xcb_window_t> topLevel;
  switch (xcb::eventType(event)) {
    case XCB_PROPERTY_NOTIFY: {
      const auto& property = xcb::eventAs<xcb_property_notify_event_t>(event);
      if (property.atom == opacity_ || property.atom == frameExtents_) topLevel = followedWith(property.window);
      break;
    }
    case XCB_CONFIGURE_NOTIFY:
      // The window inside and its frame are resized one after the other.
      topLevel = followedWith(xcb::eventAs<xcb_configure_notify_event_t>(event).window);
      break;
    case XCB_REPARENT_NOTIFY: {
      const auto& reparented = xcb::eventAs<xcb_reparent_notify_event_t>(event);
      topLevel = followedWith(reparented.parent);
      if (!topLevel) topLevel = followedWith(reparented.window);
      break;
    }
    default:
      break;
  }
  if (topLevel) followed_[*topLevel].isStale = true;
  return topLevel;
}

std::vector<WindowEffects::Known> WindowEffects::read() {
  std::vector<xcb_window_t> stale;
  for (auto& [topLevel, followed] : followed_)
    if (std::exchange(followed.isStale, false)) stale.push_back(topLevel);
  if (stale.empty()) return {};
  findInnerWindows(stale);
  std::vector<Question> questions;
  for (const xcb_window_t topLevel : stale)
    questions.emplace_back(connection_, topLevel, followed_[topLevel].inner, opacity_, frameExtents_);
  std::vector<Known> known;
  for (Question& question : questions) known.push_back(question.answer());
  return known;
}

// Select events before reading anything, so that no change is missed in between.
void WindowEffects::findInnerWindows(std::span<const xcb_window_t> topLevels) {
  const auto inside = scene::managedClients(connection_, topLevels);
  for (std::size_t index = 0; index < topLevels.size(); ++index) {
    xcb_window_t& inner = followed_[topLevels[index]].inner;
    if (inner == inside[index]) continue;
    if (inner != none) select(inner, 0);
    topLevelOf_.erase(inner);
    inner = inside[index];
    if (inner == none) continue;
    topLevelOf_[inner] = topLevels[index];
    select(inner, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  }
}

}  // namespace platform::linux::compositor
