#include "Platform/Linux/Scene/Identity.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "Platform/AsciiCase.h"
#include "Platform/Linux/Posix/ApplicationIdentifier.h"
#include "Platform/Linux/Posix/TrimmedText.h"
#include "Platform/Utf8.h"

namespace platform::linux::scene {

namespace {

struct KnownOwner {
  std::string_view name;  // class, instance or process name, in lower case
  std::string_view identifier;
};

// The system cuts process names off after 15 bytes. The names that matter there are shorter, or are listed in that
// length as well.
constexpr std::array knownOwners{
    KnownOwner{"zoom", "us.zoom.xos"},
    KnownOwner{"zoom workplace", "us.zoom.xos"},
    KnownOwner{"zoom meeting", "us.zoom.xos"},
    KnownOwner{"us.zoom.zoom", "us.zoom.xos"},
    KnownOwner{"us.zoom.xos", "us.zoom.xos"},
    KnownOwner{"slack", "com.tinyspeck.slackmacgap"},
    KnownOwner{"com.slack.slack", "com.tinyspeck.slackmacgap"},
    KnownOwner{"com.tinyspeck.slackmacgap", "com.tinyspeck.slackmacgap"},
    KnownOwner{"skype", "com.skype.skype"},
    KnownOwner{"skypeforlinux", "com.skype.skype"},
    KnownOwner{"com.skype.client", "com.skype.skype"},
    KnownOwner{"teams-for-linux", "com.microsoft.teams2"},
    KnownOwner{"teams for linux", "com.microsoft.teams2"},
    KnownOwner{"com.github.ismaelmartinez.teams_for_linux", "com.microsoft.teams2"},
    KnownOwner{"microsoft teams", "com.microsoft.teams2"},
    KnownOwner{"com.microsoft.teams2", "com.microsoft.teams2"},
    KnownOwner{"microsoft teams - preview", "com.microsoft.teams"},
    KnownOwner{"microsoft teams - insiders", "com.microsoft.teams"},
    KnownOwner{"teams", "com.microsoft.teams"},
    KnownOwner{"com.microsoft.teams", "com.microsoft.teams"},
    KnownOwner{"webex", "com.cisco.webexmeetingsapp"},
    KnownOwner{"ciscocollabhost", "com.cisco.webexmeetingsapp"},
    KnownOwner{"ciscocollabhostcef", "com.cisco.webexmeetingsapp"},
    KnownOwner{"com.cisco.webexmeetingsapp", "com.cisco.webexmeetingsapp"},
    KnownOwner{"discord", "com.hnc.Discord"},
    KnownOwner{"discordptb", "com.hnc.Discord"},
    KnownOwner{"discordcanary", "com.hnc.Discord"},
    KnownOwner{"com.discordapp.discord", "com.hnc.Discord"},
    KnownOwner{"com.hnc.discord", "com.hnc.Discord"},
};

// Programs whose transparent sheets take the pointer while the user draws, so the input region does not give them away.
constexpr std::array<std::string_view, 8> annotationPrograms{
    "gromit-mpx", "gromit", "ardesia", "pylote", "pensela", "screenpen", "epic pen", "openboard",
};

// Lockers, some of which have windows with an alpha channel.
constexpr std::array<std::string_view, 15> lockers{
    "i3lock",
    "xsecurelock",
    "xscreensaver",
    "slock",
    "sxlock",
    "xtrlock",
    "xlock",
    "alock",
    "pyxtrlock",
    "light-locker",
    "xfce4-screensaver",
    "mate-screensaver",
    "gnome-screensaver",
    "cinnamon-screensaver",
    "kscreenlocker_greet",
};

bool equalIgnoringAsciiCase(std::string_view text, std::string_view lowerCase) {
  return std::ranges::equal(text, lowerCase, {}, asciiLowerCase);
}

// The rules look for these names anywhere in an identifier. Xzoom and TeamSpeak only contain one, so they get no
// identifier rather than a misleading one.
bool holdsNameOfKnownOwner(std::string_view name) {
  return std::ranges::any_of(knownOwners, [&](const KnownOwner& owner) {
    return !std::ranges::search(name, owner.name, {}, asciiLowerCase).empty();
  });
}

std::array<std::string_view, 3> names(const WindowProperties& window) {
  return {window.className, window.instanceName, window.processName};
}

bool isOneOf(std::span<const std::string_view> programs, const WindowProperties& window) {
  return std::ranges::any_of(names(window), [&](std::string_view name) {
    return std::ranges::any_of(
        programs, [&](std::string_view known) { return equalIgnoringAsciiCase(posix::trimmed(name), known); });
  });
}

bool isAnnotationProgram(const WindowProperties& window) { return isOneOf(annotationPrograms, window); }

// The layer of a type that decides by itself where a window belongs.
std::optional<std::int64_t> layerOfType(const WindowProperties& window) {
  if (window.types.empty()) return std::nullopt;
  switch (window.types.front()) {
    case WindowType::desktop:
      return layers::below;
    case WindowType::dock:
      return layers::dock;
    case WindowType::notification:
      return layers::notification;
    case WindowType::menu:
    case WindowType::dropdownMenu:
    case WindowType::popupMenu:
    case WindowType::combo:
    case WindowType::tooltip:
    case WindowType::dragAndDrop:
      return layers::unmanaged;
    default:
      // Toolkits call an overlay a utility, a splash screen or a toolbar just to keep it off the task bar.
      return std::nullopt;
  }
}

bool hasFloatingType(const WindowProperties& window) {
  if (window.types.empty()) return false;
  const WindowType type = window.types.front();
  return type == WindowType::toolbar || type == WindowType::utility || type == WindowType::splash;
}

// The program chose the size, not the window manager. An ordinary window may be translucent and undecorated, but it
// covers the screen only while the user wants it maximised or full-screen.
bool choseItsSize(const WindowProperties& window) {
  return window.hasFixedSize || !(window.state.isFullScreen || window.state.isMaximized);
}

// A see-through window over a whole monitor.
bool isPane(const WindowProperties& window, std::span<const xcb::PixelRect> monitors) {
  return (window.hasAlpha || window.isShaped) && !window.isDecorated && coversMonitor(window.frame, monitors);
}

bool isOverlayPane(const WindowProperties& pane) {
  const bool isLetThrough = pane.hasEmptyInput || pane.wasOverlay;
  if (!pane.isManaged) {
    if (isAnnotationProgram(pane)) return true;
    // A moving wallpaper is such a pane, too, but lies beneath everything.
    return isLetThrough && !pane.isBeneathOrdinaryWindows;
  }
  if (isLetThrough) return pane.state.isAbove || pane.state.isFullScreen;
  return pane.state.isAbove && (choseItsSize(pane) || isAnnotationProgram(pane));
}

}  // namespace

std::optional<std::string> ownerIdentifier(const WindowProperties& window) {
  if (window.isOwn) return posix::applicationIdentifier;
  for (const std::string_view name : names(window)) {
    const auto known = std::ranges::find_if(
        knownOwners, [&](const KnownOwner& owner) { return equalIgnoringAsciiCase(posix::trimmed(name), owner.name); });
    if (known != knownOwners.end()) return std::string(known->identifier);
  }
  for (const std::string_view name : names(window)) {
    if (posix::trimmed(name).empty()) continue;
    return holdsNameOfKnownOwner(name) ? std::nullopt : std::optional(validUtf8(name));
  }
  return std::nullopt;
}

std::int64_t windowLayer(const WindowProperties& window, std::span<const xcb::PixelRect> monitors) {
  if (window.isOwn) return layers::own;
  if (const auto layer = layerOfType(window)) return *layer;
  if (window.state.isBelow) return layers::below;
  const bool pane = window.wasOverlay || isPane(window, monitors);
  if (pane && isOverlayPane(window)) return layers::overlay;
  if (!window.isManaged) return layers::unmanaged;
  // A pane that is not kept above is still no ordinary window.
  if (window.state.isAbove || hasFloatingType(window) || (pane && choseItsSize(window))) return layers::floating;
  return layers::ordinary;
}

bool coversMonitor(const xcb::PixelRect& frame, std::span<const xcb::PixelRect> monitors) {
  return std::ranges::any_of(monitors, [&](const xcb::PixelRect& monitor) {
    const xcb::PixelRect common = intersection(frame, monitor);
    const auto area = [](const xcb::PixelRect& rect) { return std::int64_t{rect.width} * rect.height; };
    return !monitor.isEmpty() && area(common) * 10 >= area(monitor) * 9;
  });
}

bool isScreenLocker(const WindowProperties& window, std::span<const xcb::PixelRect> monitors) {
  if (window.isOwn || window.isManaged || window.isShaped) return false;
  // A wallpaper: whatever hides a session lies above all others.
  if (window.isBeneathOrdinaryWindows || window.isLowestOfDesktop) return false;
  // No locker lets clicks through, but wallpapers do.
  if (window.hasEmptyInput || layerOfType(window) || windowLayer(window, monitors) >= layers::overlay) return false;
  return std::ranges::any_of(monitors, [&](const xcb::PixelRect& monitor) {
    return !monitor.isEmpty() && intersection(window.frame, monitor) == monitor;
  });
}

ScreenSheet screenSheet(const WindowProperties& window, std::span<const xcb::PixelRect> monitors) {
  if (isScreenLocker(window, monitors)) {
    return window.hasAlpha && !isOneOf(lockers, window) ? ScreenSheet::perhapsLocker : ScreenSheet::locker;
  }
  WindowProperties clickThrough = window;
  clickThrough.hasEmptyInput = true;
  const auto isOverlay = [&](const WindowProperties& each) { return windowLayer(each, monitors) == layers::overlay; };
  return isOverlay(clickThrough) && !isOverlay(window) ? ScreenSheet::takesPointer : ScreenSheet::none;
}

std::string validUtf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const auto character = firstUtf8Character(bytes);
    if (character) {
      text.append(bytes.substr(0, character->length));
    } else {
      const auto byte = static_cast<unsigned char>(bytes.front());
      text.push_back(static_cast<char>(0xC0U | (byte >> 6U)));
      text.push_back(static_cast<char>(0x80U | (byte & 0x3FU)));
    }
    bytes.remove_prefix(character ? character->length : 1);
  }
  return text;
}

}  // namespace platform::linux::scene
