#include "Platform/Linux/Session/AutostartItem.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "Platform/Linux/Posix/AtomicFile.h"
#include "Platform/Linux/Posix/DesktopEntry.h"
#include "Platform/Linux/Posix/FileDescriptor.h"
#include "Platform/Linux/Posix/SystemError.h"
#include "Platform/Linux/Toolkit/DesktopProcess.h"

namespace platform::linux::session {

AutostartItem::AutostartItem(const std::string& configurationDirectory, std::string program)
    : path_(configurationDirectory + "/autostart/" + posix::applicationIdentifier + ".desktop"),
      program_(std::move(program)) {}

LoginItemStatus AutostartItem::status() const {
  const auto file = posix::openRegularFile(path_, O_RDONLY);
  const auto text = file ? posix::readAll(file->get()) : std::unexpected(file.error());
  const auto entry = text ? posix::parseDesktopEntry(*text) : std::nullopt;
  const auto says = [&](const char* key, const char* value) {
    const auto found = entry->find(key);
    return found != entry->end() && found->second == value;
  };
  if (!entry || !entry->contains("Exec") || !says("Type", "Application")) return LoginItemStatus::notRegistered;
  if (says("Hidden", "true") || says("X-GNOME-Autostart-enabled", "false")) return LoginItemStatus::notRegistered;
  return LoginItemStatus::enabled;
}

std::expected<void, Error> AutostartItem::registerItem() {
  return posix::replaceFile(path_,
                            "[Desktop Entry]\n"
                            "Type=Application\n"
                            "Name=Quillfade\n"
                            "Comment=Hide annotations behind a live view of the screen\n"
                            "Exec=" +
                                posix::desktopExec(program_) +
                                "\n"
                                "Icon=" +
                                std::string(posix::applicationIdentifier) +
                                "\n"
                                "Terminal=false\n"
                                "X-GNOME-Autostart-enabled=true\n");
}

std::expected<void, Error> AutostartItem::unregisterItem() {
  if (::unlink(path_.c_str()) != 0 && errno != ENOENT)
    return std::unexpected(posix::systemError("Could not remove", path_, errno));
  return {};
}

}  // namespace platform::linux::session
