#include "Platform/Linux/Xcb/Connection.h"

#include <poll.h>
#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/randr.h>
#include <xcb/shape.h>
#include <xcb/sync.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <tuple>
#include <utility>

namespace platform::linux::xcb {

namespace {

struct Requirement {
  Extension extension;
  xcb_extension_t* id;
  const char* name;
  std::uint32_t major;
  std::uint32_t minor;
};

// The lowest versions that have what is used: named pixmaps, regions, input shapes, fences, monitors.
const std::array<Requirement, extensionCount>& requirements() {
  static const std::array<Requirement, extensionCount> table{{
      {Extension::composite, &xcb_composite_id, "Composite", 0, 4},
      {Extension::damage, &xcb_damage_id, "DAMAGE", 1, 1},
      {Extension::xfixes, &xcb_xfixes_id, "XFIXES", 2, 0},
      {Extension::render, &xcb_render_id, "RENDER", 0, 10},
      {Extension::randr, &xcb_randr_id, "RANDR", 1, 5},
      {Extension::shape, &xcb_shape_id, "SHAPE", 1, 1},
      {Extension::sync, &xcb_sync_id, "SYNC", 3, 1},
  }};
  return table;
}

using Version = std::pair<std::uint32_t, std::uint32_t>;

template <typename R, typename Cookie>
Version versionIn(xcb_connection_t* connection, R* (*function)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
                  const std::optional<Cookie>& asked) {
  if (!asked) return {};
  const Reply<R> reply = awaitReply(connection, function, *asked);
  return reply ? Version{reply->major_version, reply->minor_version} : Version{};
}

// The server grants a client no higher version of an extension than the client asked for.
std::array<Version, extensionCount> queryVersions(const Connection& connection) {
  xcb_connection_t* c = connection.get();
  const auto ask = [&](Extension extension, auto request, auto... arguments) {
    return connection.has(extension) ? std::optional(request(c, arguments...)) : std::nullopt;
  };
  const auto composite = ask(Extension::composite, xcb_composite_query_version, 0U, 4U);
  const auto damage = ask(Extension::damage, xcb_damage_query_version, 1U, 1U);
  const auto xfixes = ask(Extension::xfixes, xcb_xfixes_query_version, 5U, 0U);
  const auto render = ask(Extension::render, xcb_render_query_version, 0U, 11U);
  const auto randr = ask(Extension::randr, xcb_randr_query_version, 1U, 5U);
  const auto shape = ask(Extension::shape, xcb_shape_query_version);
  const auto sync = ask(Extension::sync, xcb_sync_initialize, std::uint8_t{3}, std::uint8_t{1});
  return {versionIn(c, xcb_composite_query_version_reply, composite),
          versionIn(c, xcb_damage_query_version_reply, damage),
          versionIn(c, xcb_xfixes_query_version_reply, xfixes),
          versionIn(c, xcb_render_query_version_reply, render),
          versionIn(c, xcb_randr_query_version_reply, randr),
          versionIn(c, xcb_shape_query_version_reply, shape),
          versionIn(c, xcb_sync_initialize_reply, sync)};
}

void logError(const xcb_generic_error_t& error) {
  std::fprintf(stderr,
               "quillfade: The display server refused request %u.%u about 0x%x (error %u). This is a bug in Quillfade; "
               "please report it.\n",
               error.major_code, error.minor_code, error.resource_id, error.error_code);
}

std::string unreachableSentence(const std::string& displayName) {
  const char* fromEnvironment = std::getenv("DISPLAY");
  const std::string name = displayName.empty() && fromEnvironment != nullptr ? fromEnvironment : displayName;
  if (name.empty()) return "There is no X11 display: the environment variable DISPLAY is not set.";
  return "The X11 display " + name + " cannot be reached.";
}

// The library looks up the display's cookie in one buffer for the whole process, and streams connect on their own
// threads.
xcb_connection_t* connect(const std::string& displayName, int& screenNumber) {
  static std::mutex oneAtATime;
  const std::scoped_lock lock(oneAtATime);
  return xcb_connect(displayName.empty() ? nullptr : displayName.c_str(), &screenNumber);
}

}  // namespace

std::expected<std::unique_ptr<Connection>, Error> Connection::open(const std::string& displayName) {
  int screenNumber = 0;
  xcb_connection_t* connection = connect(displayName, screenNumber);
  if (xcb_connection_has_error(connection) != 0) {
    xcb_disconnect(connection);
    return std::unexpected(Error{unreachableSentence(displayName)});
  }
  xcb_screen_iterator_t screen = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (int skipped = 0; skipped < screenNumber && screen.rem > 1; ++skipped) xcb_screen_next(&screen);
  std::unique_ptr<Connection> opened(new Connection(connection, screenNumber, screen.data));
  if (opened->isBroken()) return std::unexpected(Error{connectionLostSentence});
  return opened;
}

Connection::Connection(xcb_connection_t* connection, int screenNumber, xcb_screen_t* screen)
    : connection_(connection),
      screenNumber_(screenNumber),
      setup_(xcb_get_setup(connection)),
      screen_(screen),
      unexpectedError_(logError) {
  queryExtensions();
  if (has(Extension::render)) queryFormats();
}

Connection::~Connection() { xcb_disconnect(connection_); }

void Connection::queryExtensions() {
  for (const Requirement& required : requirements()) xcb_prefetch_extension_data(connection_, required.id);
  for (const Requirement& required : requirements()) {
    const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection_, required.id);
    if (data == nullptr || data->present == 0) continue;
    extensions_[index(required.extension)] = {.isUsable = true, .firstEvent = data->first_event, .isPresent = true};
  }
  const std::array<Version, extensionCount> versions = queryVersions(*this);
  for (const Requirement& required : requirements()) {
    ExtensionState& state = extensions_[index(required.extension)];
    const Version& version = versions[index(required.extension)];
    state.isUsable = state.isUsable && version >= Version{required.major, required.minor};
    std::tie(state.major, state.minor) = version;
  }
}

void Connection::queryFormats() {
  const auto reply =
      awaitReply(connection_, xcb_render_query_pict_formats_reply, xcb_render_query_pict_formats(connection_));
  if (!reply) return;
  std::unordered_map<xcb_render_pictformat_t, bool> alphaOfFormat;
  for (auto format = xcb_render_query_pict_formats_formats_iterator(reply.get()); format.rem > 0;
       xcb_render_pictforminfo_next(&format)) {
    const xcb_render_directformat_t& direct = format.data->direct;
    if (format.data->type != XCB_RENDER_PICT_TYPE_DIRECT) continue;
    alphaOfFormat[format.data->id] = direct.alpha_mask != 0;
    if (format.data->depth == 32 && direct.alpha_shift == 24 && direct.alpha_mask == 0xff && direct.red_shift == 16 &&
        direct.green_shift == 8 && direct.blue_shift == 0)
      argbFormat_ = format.data->id;
  }
  auto screen = xcb_render_query_pict_formats_screens_iterator(reply.get());
  for (int skipped = 0; skipped < screenNumber_ && screen.rem > 1; ++skipped) xcb_render_pictscreen_next(&screen);
  for (auto depth = xcb_render_pictscreen_depths_iterator(screen.data); depth.rem > 0;
       xcb_render_pictdepth_next(&depth)) {
    for (auto visual = xcb_render_pictdepth_visuals_iterator(depth.data); visual.rem > 0;
         xcb_render_pictvisual_next(&visual)) {
      const auto alpha = alphaOfFormat.find(visual.data->format);
      if (alpha != alphaOfFormat.end()) visualFormats_[visual.data->visual] = {visual.data->format, alpha->second};
    }
  }
}

std::vector<std::string> Connection::missingExtensions() const {
  std::vector<std::string> missing;
  for (const Requirement& required : requirements())
    if (!has(required.extension)) missing.emplace_back(required.name);
  return missing;
}

std::vector<Connection::ExtensionVersion> Connection::extensionVersions() const {
  std::vector<ExtensionVersion> versions;
  for (const Requirement& required : requirements()) {
    const ExtensionState& state = extensions_[index(required.extension)];
    versions.push_back({required.name, state.major, state.minor, state.isPresent, state.isUsable});
  }
  return versions;
}

xcb_render_pictformat_t Connection::formatOfVisual(xcb_visualid_t visual) const {
  const auto found = visualFormats_.find(visual);
  return found == visualFormats_.end() ? 0 : found->second.format;
}

bool Connection::visualHasAlpha(xcb_visualid_t visual) const {
  const auto found = visualFormats_.find(visual);
  return found != visualFormats_.end() && found->second.hasAlpha;
}

// Events and errors arrive in the order of the requests that they follow.
bool Connection::isExpected(const xcb_generic_event_t& error) {
  return !expectedErrors_.empty() && expectedErrors_.front() == error.full_sequence;
}

Event Connection::withoutErrors(xcb_generic_event_t* (*next)(xcb_connection_t*)) {
  while (Event event{next(connection_)}) {
    while (!expectedErrors_.empty() && !isNotAfter(event->full_sequence, expectedErrors_.front()))
      expectedErrors_.pop_front();
    if (event->response_type != 0) return event;
    if (!isExpected(*event)) unexpectedError_(eventAs<xcb_generic_error_t>(*event));
  }
  return {};
}

Event Connection::nextEvent() { return withoutErrors(xcb_poll_for_event); }

Event Connection::nextQueuedEvent() { return withoutErrors(xcb_poll_for_queued_event); }

bool Connection::synchronize(int milliseconds) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  const xcb_get_input_focus_cookie_t cookie = xcb_get_input_focus(connection_);
  xcb_flush(connection_);
  for (;;) {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (xcb_poll_for_reply(connection_, cookie.sequence, &reply, &error) == 1) {
      const bool answered = reply != nullptr;
      std::free(reply);
      std::free(error);
      return answered;
    }
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
    if (left <= 0 || isBroken()) {
      xcb_discard_reply(connection_, cookie.sequence);
      return false;
    }
    pollfd descriptor{fileDescriptor(), POLLIN, 0};
    if (::poll(&descriptor, 1, static_cast<int>(left) + 1) < 0 && errno != EINTR) return false;
  }
}

xcb_atom_t Connection::atom(std::string_view name) {
  internAtoms({name});
  const auto found = atoms_.find(std::string(name));
  return found == atoms_.end() ? xcb_atom_t{XCB_ATOM_NONE} : found->second;
}

void Connection::internAtoms(std::span<const std::string_view> names) {
  std::vector<std::pair<std::string, xcb_intern_atom_cookie_t>> asked;
  for (const std::string_view name : names) {
    if (atoms_.contains(std::string(name))) continue;
    asked.emplace_back(name, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()));
  }
  for (const auto& [name, cookie] : asked)
    if (const auto reply = awaitReply(connection_, xcb_intern_atom_reply, cookie)) atoms_[name] = reply->atom;
}

void Connection::addRootEvents(std::uint32_t mask) {
  rootEventMask_ |= mask;
  selectRootEvents();
}

void Connection::removeRootEvents(std::uint32_t mask) {
  rootEventMask_ &= ~mask;
  selectRootEvents();
}

void Connection::selectRootEvents() {
  xcb_change_window_attributes(connection_, root(), XCB_CW_EVENT_MASK, &rootEventMask_);
}

std::string enumerated(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t index = 0; index < names.size(); ++index) {
    if (index > 0) text += index + 1 == names.size() ? " and " : ", ";
    text += names[index];
  }
  return text;
}

std::string missingExtensionsSentence(const std::vector<std::string>& missing) {
  return "This display lacks the X extension" + std::string{missing.size() == 1 ? " " : "s "} + enumerated(missing) +
         ", without which nothing can be captured.";
}

}  // namespace platform::linux::xcb
