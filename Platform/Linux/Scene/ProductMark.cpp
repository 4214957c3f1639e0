#include "Platform/Linux/Scene/ProductMark.h"

namespace platform::linux::scene {

ProductMark::ProductMark(xcb::Connection& connection, std::span<const std::uint32_t> clients)
    : connection_(connection), window_(connection.newId()) {
  xcb_connection_t* c = connection_.get();
  const std::uint32_t overrideRedirect = 1;
  xcb_create_window(c, XCB_COPY_FROM_PARENT, window_, connection_.root(), -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
  xcb_change_property(c, XCB_PROP_MODE_REPLACE, window_, connection_.atom(productClientsProperty), XCB_ATOM_CARDINAL,
                      32, static_cast<std::uint32_t>(clients.size()), clients.data());
}

ProductMark::~ProductMark() { xcb_destroy_window(connection_.get(), window_); }

}  // namespace platform::linux::scene
