#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "Tests/Support/Reply.h"
#include "Tests/Support/XClient.h"

namespace support {

namespace {

constexpr std::uint32_t longestProperty = 1 << 20;  // in units of four bytes

Reply<xcb_get_property_reply_t> property(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name) {
  return waitForReply(connection, xcb_get_property_reply,
                      xcb_get_property(connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty));
}

}  // namespace

xcb_atom_t XClient::atom(const std::string& name) {
  const auto reply =
      waitForReply(connection_, xcb_intern_atom_reply,
                   xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()));
  if (!reply) throw std::runtime_error("The X server gave no atom for " + name + ".");
  return reply->atom;
}

void XClient::setAtoms(xcb_window_t window, const std::string& property, const std::vector<std::string>& names) {
  std::vector<std::uint32_t> atoms;
  for (const std::string& name : names) atoms.push_back(atom(name));
  setNumbers(window, property, "ATOM", atoms);
}

void XClient::setNumbers(xcb_window_t window, const std::string& property, const std::string& type,
                         const std::vector<std::uint32_t>& values) {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), atom(type), 32,
                      static_cast<std::uint32_t>(values.size()), values.data());
}

void XClient::setText(xcb_window_t window, const std::string& property, const std::string& type,
                      const std::string& text) {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), atom(type), 8,
                      static_cast<std::uint32_t>(text.size()), text.data());
}

void XClient::setClass(xcb_window_t window, const std::string& instanceName, const std::string& className) {
  setText(window, "WM_CLASS", "STRING", instanceName + '\0' + className + '\0');
}

std::vector<std::uint32_t> XClient::numbers(xcb_window_t window, const std::string& name) {
  const auto reply = property(connection_, window, atom(name));
  if (!reply || reply->format != 32) return {};
  std::vector<std::uint32_t> values(reply->value_len);
  if (!values.empty()) std::memcpy(values.data(), xcb_get_property_value(reply.get()), values.size() * 4);
  return values;
}

std::string XClient::text(xcb_window_t window, const std::string& name) {
  const auto reply = property(connection_, window, atom(name));
  if (!reply) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

void XClient::sendToRoot(xcb_window_t window, const std::string& type, const std::vector<std::uint32_t>& values) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = atom(type);
  std::copy_n(values.begin(), std::min<std::size_t>(values.size(), 5), event.data.data32);
  xcb_send_event(connection_, 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
  sync();
}

void XClient::sync() {
  const auto reply = waitForReply(connection_, xcb_get_input_focus_reply, xcb_get_input_focus(connection_));
  if (!reply) throw std::runtime_error("The connection to the X server is lost.");
}

Picture XClient::contents(xcb_drawable_t drawable, const PixelRect& part) {
  const auto reply =
      waitForReply(connection_, xcb_get_image_reply,
                   xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, static_cast<std::int16_t>(part.x),
                                 static_cast<std::int16_t>(part.y), static_cast<std::uint16_t>(part.width),
                                 static_cast<std::uint16_t>(part.height), 0xffffffff));
  const std::size_t count = static_cast<std::size_t>(part.width) * static_cast<std::size_t>(part.height);
  if (!reply || static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) != count * 4) {
    throw std::runtime_error("The X server gave no picture of 32 bits a pixel.");
  }
  std::vector<std::uint32_t> pixels(count);
  std::memcpy(pixels.data(), xcb_get_image_data(reply.get()), count * 4);
  for (std::uint32_t& pixel : pixels) pixel &= 0x00ffffff;
  return {part.width, part.height, std::move(pixels)};
}

std::vector<xcb_window_t> XClient::children(xcb_window_t window) {
  const auto reply = waitForReply(connection_, xcb_query_tree_reply, xcb_query_tree(connection_, window));
  if (!reply) return {};
  const xcb_window_t* first = xcb_query_tree_children(reply.get());
  return {first, first + xcb_query_tree_children_length(reply.get())};
}

std::optional<PixelRect> XClient::frame(xcb_window_t window) {
  const auto geometry = waitForReply(connection_, xcb_get_geometry_reply, xcb_get_geometry(connection_, window));
  const auto position = waitForReply(connection_, xcb_translate_coordinates_reply,
                                     xcb_translate_coordinates(connection_, window, root(), 0, 0));
  if (!geometry || !position) return std::nullopt;
  return PixelRect{position->dst_x, position->dst_y, geometry->width, geometry->height};
}

bool XClient::isViewable(xcb_window_t window) {
  const auto reply =
      waitForReply(connection_, xcb_get_window_attributes_reply, xcb_get_window_attributes(connection_, window));
  return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

std::optional<xcb_window_t> XClient::findTopLevel(const std::string& className) {
  for (const xcb_window_t window : children(root())) {
    if (isViewable(window) && text(window, "WM_CLASS").ends_with('\0' + className + '\0')) return window;
  }
  return std::nullopt;
}

xcb_window_t XClient::selectionOwner(const std::string& selection) {
  const auto reply =
      waitForReply(connection_, xcb_get_selection_owner_reply, xcb_get_selection_owner(connection_, atom(selection)));
  return reply ? reply->owner : XCB_NONE;
}

void XClient::selectInput(xcb_window_t window, std::uint32_t eventMask) {
  xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &eventMask);
  sync();
}

bool XClient::waitForEvent(std::uint8_t type, std::chrono::milliseconds deadline) {
  xcb_flush(connection_);
  return waitUntil(
      [&] {
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
          if ((event->response_type & 0x7f) == type) return true;
        }
        return false;
      },
      deadline);
}

}  // namespace support
