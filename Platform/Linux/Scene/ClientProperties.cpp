#include "Platform/Linux/Scene/ClientProperties.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <ranges>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/Linux/Scene/ProductMark.h"

namespace platform::linux::scene {

namespace {

// In the order of the watched properties.
enum Property : std::size_t {
  classNames,
  windowType,
  desktopState,
  managerState,
  frameExtents,
  decorationHints,
  sizeHints,
  processId,
  productClients,
};

// No honest window has more than this; the rest of a longer property stays in the server. In units of four bytes.
constexpr std::uint32_t longestClass = 1024;
constexpr std::uint32_t longestList = 64;

std::string_view textOf(const xcb_get_property_reply_t& reply) {
  if (reply.format != 8) return {};
  return {static_cast<const char*>(xcb_get_property_value(&reply)),
          static_cast<std::size_t>(xcb_get_property_value_length(&reply))};
}

std::vector<std::uint32_t> numbersOf(const xcb_get_property_reply_t& reply) {
  const auto length = static_cast<std::size_t>(xcb_get_property_value_length(&reply));
  if (reply.format != 32 || length == 0) return {};
  std::vector<std::uint32_t> numbers(length / sizeof(std::uint32_t));
  std::memcpy(numbers.data(), xcb_get_property_value(&reply), numbers.size() * sizeof(std::uint32_t));
  return numbers;
}

void decodeClass(std::string_view text, ClientProperties& properties) {
  const auto first = text.substr(0, text.find('\0'));
  properties.instanceName = first;
  if (first.size() == text.size()) return;
  const auto rest = text.substr(first.size() + 1);
  properties.className = rest.substr(0, rest.find('\0'));
}

void decodeTypes(const PropertyAtoms& names, const std::vector<std::uint32_t>& atoms, ClientProperties& properties) {
  for (const std::uint32_t atom : atoms) {
    const auto known = std::ranges::find(names.types, atom, &std::pair<xcb_atom_t, WindowType>::first);
    if (known != names.types.end()) properties.types.push_back(known->second);
  }
}

void decodeState(const PropertyAtoms& names, const std::vector<std::uint32_t>& atoms, ClientProperties& properties) {
  const auto has = [&](xcb_atom_t name) { return std::ranges::find(atoms, name) != atoms.end(); };
  properties.state = {.isAbove = has(names.above),
                      .isBelow = has(names.below),
                      .isFullScreen = has(names.fullScreen),
                      .isMaximized = has(names.maximizedVertically) && has(names.maximizedHorizontally)};
}

// What the window manager drew counts more than what the program asked for.
void decodeDecorations(const std::vector<std::uint32_t>& extents, const std::vector<std::uint32_t>& hints,
                       ClientProperties& properties) {
  constexpr std::uint32_t saysDecorations = 2;
  if (extents.size() >= 4) {
    properties.hasDecorations = std::ranges::any_of(extents, [](std::uint32_t extent) { return extent != 0; });
  } else if (hints.size() >= 3 && (hints[0] & saysDecorations) != 0) {
    properties.hasDecorations = hints[2] != 0;
  }
}

bool isOfFixedSize(const std::vector<std::uint32_t>& hints) {
  constexpr std::uint32_t saysBothSizes = 0x30;
  constexpr std::size_t leastSize = 5;
  constexpr std::size_t largestSize = 7;
  if (hints.size() <= largestSize + 1 || (hints[0] & saysBothSizes) != saysBothSizes) return false;
  return hints[leastSize] == hints[largestSize] && hints[leastSize + 1] == hints[largestSize + 1] &&
         hints[leastSize] != 0 && hints[leastSize + 1] != 0;
}

// Toolkits that cannot make an empty region make one of a single pixel.
bool isEmptyInput(const xcb_shape_get_rectangles_reply_t& reply) {
  std::uint64_t area = 0;
  const std::span rectangles(xcb_shape_get_rectangles_rectangles(&reply),
                             static_cast<std::size_t>(xcb_shape_get_rectangles_rectangles_length(&reply)));
  for (const xcb_rectangle_t& rectangle : rectangles) area += std::uint64_t{rectangle.width} * rectangle.height;
  return area <= 1;
}

// In the order of `Property`.
constexpr std::array<const char*, PropertyAtoms::count> propertyNames{
    "WM_CLASS",        "_NET_WM_WINDOW_TYPE", "_NET_WM_STATE",
    "WM_STATE",        "_NET_FRAME_EXTENTS",  "_MOTIF_WM_HINTS",
    "WM_NORMAL_HINTS", "_NET_WM_PID",         productClientsProperty};

constexpr std::array typeNames{std::pair{"_NET_WM_WINDOW_TYPE_DESKTOP", WindowType::desktop},
                               std::pair{"_NET_WM_WINDOW_TYPE_DOCK", WindowType::dock},
                               std::pair{"_NET_WM_WINDOW_TYPE_TOOLBAR", WindowType::toolbar},
                               std::pair{"_NET_WM_WINDOW_TYPE_MENU", WindowType::menu},
                               std::pair{"_NET_WM_WINDOW_TYPE_DROPDOWN_MENU", WindowType::dropdownMenu},
                               std::pair{"_NET_WM_WINDOW_TYPE_POPUP_MENU", WindowType::popupMenu},
                               std::pair{"_NET_WM_WINDOW_TYPE_COMBO", WindowType::combo},
                               std::pair{"_NET_WM_WINDOW_TYPE_TOOLTIP", WindowType::tooltip},
                               std::pair{"_NET_WM_WINDOW_TYPE_DND", WindowType::dragAndDrop},
                               std::pair{"_NET_WM_WINDOW_TYPE_NOTIFICATION", WindowType::notification},
                               std::pair{"_NET_WM_WINDOW_TYPE_SPLASH", WindowType::splash},
                               std::pair{"_NET_WM_WINDOW_TYPE_UTILITY", WindowType::utility},
                               std::pair{"_NET_WM_WINDOW_TYPE_DIALOG", WindowType::dialog},
                               std::pair{"_NET_WM_WINDOW_TYPE_NORMAL", WindowType::normal}};

constexpr std::array stateNames{std::pair{"_NET_WM_STATE_ABOVE", &PropertyAtoms::above},
                                std::pair{"_NET_WM_STATE_BELOW", &PropertyAtoms::below},
                                std::pair{"_NET_WM_STATE_FULLSCREEN", &PropertyAtoms::fullScreen},
                                std::pair{"_NET_WM_STATE_MAXIMIZED_VERT", &PropertyAtoms::maximizedVertically},
                                std::pair{"_NET_WM_STATE_MAXIMIZED_HORZ", &PropertyAtoms::maximizedHorizontally}};

// Looks up all atoms in one round trip.
xcb::Connection& withNames(xcb::Connection& connection) {
  std::vector<std::string_view> names(propertyNames.begin(), propertyNames.end());
  std::ranges::copy(typeNames | std::views::keys, std::back_inserter(names));
  std::ranges::copy(stateNames | std::views::keys, std::back_inserter(names));
  connection.internAtoms(names);
  return connection;
}

}  // namespace

PropertyAtoms::PropertyAtoms(xcb::Connection& connection)
    : PropertyAtoms([&known = withNames(connection)](std::string_view name) { return known.atom(name); }) {}

PropertyAtoms::PropertyAtoms(const std::function<xcb_atom_t(std::string_view)>& atom) {
  std::ranges::transform(propertyNames, properties.begin(), atom);
  for (const auto& [name, type] : typeNames) types.emplace_back(atom(name), type);
  for (const auto& [name, member] : stateNames) this->*member = atom(name);
}

bool PropertyAtoms::watches(xcb_atom_t property) const {
  return std::ranges::find(properties, property) != properties.end();
}

ClientPropertiesRequest::ClientPropertiesRequest(xcb::Connection& connection, const PropertyAtoms& atoms,
                                                 xcb_window_t window)
    : connection_(connection), atoms_(atoms) {
  for (std::size_t i = 0; i < properties_.size(); ++i) {
    properties_[i] = xcb_get_property(connection.get(), 0, window, atoms.properties[i], XCB_GET_PROPERTY_TYPE_ANY, 0,
                                      i == classNames ? longestClass : longestList);
  }
  if (!connection.has(xcb::Extension::shape)) return;
  shape_ = xcb_shape_query_extents(connection.get(), window);
  input_ = xcb_shape_get_rectangles(connection.get(), window, XCB_SHAPE_SK_INPUT);
}

ClientPropertiesRequest::ClientPropertiesRequest(ClientPropertiesRequest&& other) noexcept
    : connection_(other.connection_),
      atoms_(other.atoms_),
      properties_(other.properties_),
      shape_(other.shape_),
      input_(other.input_),
      isPending_(std::exchange(other.isPending_, false)) {}

ClientPropertiesRequest::~ClientPropertiesRequest() {
  if (!isPending_) return;
  for (const auto cookie : properties_) xcb_discard_reply(connection_.get(), cookie.sequence);
  if (shape_) xcb_discard_reply(connection_.get(), shape_->sequence);
  if (input_) xcb_discard_reply(connection_.get(), input_->sequence);
}

ClientProperties decodeProperties(const PropertyAtoms& atoms, const PropertyReplies& replies) {
  const auto numbers = [&](Property property) {
    return replies[property] != nullptr ? numbersOf(*replies[property]) : std::vector<std::uint32_t>{};
  };
  ClientProperties result;
  if (replies[classNames] != nullptr) decodeClass(textOf(*replies[classNames]), result);
  decodeTypes(atoms, numbers(windowType), result);
  decodeState(atoms, numbers(desktopState), result);
  decodeDecorations(numbers(frameExtents), numbers(decorationHints), result);
  result.hasFixedSize = isOfFixedSize(numbers(sizeHints));
  const auto managed = numbers(managerState);
  constexpr std::uint32_t withdrawn = 0;
  result.isManaged = !managed.empty() && managed.front() != withdrawn;
  if (const auto id = numbers(processId); !id.empty()) result.processId = id.front();
  result.productClients = numbers(productClients);
  return result;
}

ClientProperties ClientPropertiesRequest::collect() {
  isPending_ = false;
  xcb_connection_t* const c = connection_.get();
  std::array<xcb::Reply<xcb_get_property_reply_t>, PropertyAtoms::count> replies;
  PropertyReplies seen{};
  for (std::size_t i = 0; i < replies.size(); ++i) {
    replies[i] = xcb::awaitReply(c, xcb_get_property_reply, properties_[i]);
    seen[i] = replies[i].get();
  }
  ClientProperties result = decodeProperties(atoms_, seen);
  if (shape_) {
    const auto reply = xcb::awaitReply(c, xcb_shape_query_extents_reply, *shape_);
    result.hasShape = reply && reply->bounding_shaped != 0;
  }
  if (input_) {
    const auto reply = xcb::awaitReply(c, xcb_shape_get_rectangles_reply, *input_);
    result.hasEmptyInput = reply && isEmptyInput(*reply);
  }
  return result;
}

}  // namespace platform::linux::scene
