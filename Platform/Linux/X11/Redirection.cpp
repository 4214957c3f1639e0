#include "Platform/Linux/X11/Redirection.h"

#include <xcb/composite.h>

namespace platform::x11 {

std::expected<void, Error> redirectSubwindows(Connection& connection) {
  if (!connection.has(Extension::composite)) return std::unexpected(Error{missingExtensionsSentence({"Composite"})});
  // Automatic redirection gets along with a compositing manager's own, whoever comes first.
  xcb_composite_redirect_subwindows(connection.get(), connection.root(), XCB_COMPOSITE_REDIRECT_AUTOMATIC);
  connection.flush();
  return {};
}

}  // namespace platform::x11
