#include "Platform/Linux/Holes/HoleEngine.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "Platform/Linux/Holes/HoleStream.h"

namespace platform::linux::holes {

HoleEngine::HoleEngine(xcb::Connection& connection, scene::Scene& scene, RunLoop& runLoop,
                       std::vector<std::uint32_t> ownClients, std::uint32_t token)
    : connection_(connection),
      scene_(scene),
      runLoop_(runLoop),
      ownClients_(std::move(ownClients)),
      book_([this](xcb_window_t window) { return isOwn(window); },
            [&connection](xcb_visualid_t visual) { return connection.visualHasAlpha(visual); }),
      cutter_(connection, token) {
  if (extensionsMissingForHoles(connection_).empty()) closeLeftHoles(connection_, std::nullopt);
  scene_.addListener(*this);
}

HoleEngine::~HoleEngine() {
  scene_.removeListener(*this);
  std::vector<xcb_window_t> windows;
  for (const auto& [window, open] : holes_) windows.push_back(window);
  for (const xcb_window_t window : windows)
    if (!holes_.at(window).closing) mend(window);
  connection_.flush();
  if (!holes_.empty()) std::this_thread::sleep_for(timeForCompositors);
  while (!holes_.empty()) finish(holes_.begin()->first);
  if (!windows.empty()) finishRequests(connection_);
}

std::shared_ptr<platform::CaptureStream> HoleEngine::makeStream(stream::CaptureStreamSettings settings,
                                                                std::weak_ptr<StreamDelegate> delegate) {
  return std::make_shared<HoleStream>(weak_from_this(), std::move(settings), std::move(delegate));
}

bool HoleEngine::isOwn(xcb_window_t window) const {
  return std::ranges::find(ownClients_, window & ~connection_.resourceMask()) != ownClients_.end();
}

std::optional<bool> HoleEngine::isShapedByOwner(xcb_window_t window) const {
  const auto open = holes_.find(window);
  if (open == holes_.end()) return std::nullopt;
  return open->second.hole.own.has_value();
}

std::expected<void, Error> HoleEngine::open(const stream::CaptureStreamSettings& settings,
                                            std::weak_ptr<StreamDelegate> delegate) {
  if (const auto missing = extensionsMissingForHoles(connection_); !missing.empty())
    return std::unexpected(Error{xcb::missingExtensionsSentence(missing)});
  book_.open(settings.serial, settings.source, stream::filterOf(settings, connection_));
  const auto done = carryOut();
  if (done)
    delegates_[settings.serial] = std::move(delegate);
  else
    close(settings.serial);
  return done;
}

void HoleEngine::close(HoleBook::Stream stream) {
  if (!book_.isOpen(stream)) return;
  book_.close(stream);
  delegates_.erase(stream);
  mayHaveChanged_ = true;
  settle();
}

void HoleEngine::admit(HoleBook::Stream stream, std::span<const xcb_window_t> windows) {
  book_.admit(stream, windows);
  mayHaveChanged_ = true;
  settle();
}

void HoleEngine::settle() {
  if (!std::exchange(mayHaveChanged_, false)) return;
  for (const xcb_window_t window : std::exchange(resized_, {})) {
    const auto open = holes_.find(window);
    if (open != holes_.end() && open->second.closing) finish(window);
  }
  const auto done = carryOut();
  if (done) return;
  for (const auto& [stream, weakDelegate] : std::exchange(delegates_, {}))
    if (const auto delegate = weakDelegate.lock()) delegate->streamDidStop(done.error());
}

std::expected<void, Error> HoleEngine::carryOut() {
  std::expected<void, Error> result;
  std::vector<xcb_window_t> halfway;
  for (const auto& step : book_.steps(scene_.windows())) {
    if (auto done = carryOut(step); !done) result = done;
    const auto open = holes_.find(step.window);
    if (open != holes_.end() && open->second.closing) halfway.push_back(step.window);
  }
  if (!halfway.empty()) finishLater(halfway);
  return result;
}

std::expected<void, Error> HoleEngine::carryOut(const HoleBook::Step& step) {
  if (step.areas.empty()) {
    mend(step.window);
    return {};
  }
  const auto open = holes_.find(step.window);
  const auto cut = cutter_.cut(open == holes_.end() ? std::nullopt : std::optional(open->second.hole), step);
  if (!cut) return std::unexpected(cut.error());
  if (*cut)
    holes_.insert_or_assign(step.window, Open{.hole = **cut, .closing = std::nullopt});
  else
    forget(step.window);
  return {};
}

void HoleEngine::mend(xcb_window_t window) {
  const auto open = holes_.find(window);
  if (open == holes_.end()) return;
  if (auto rest = cutter_.mend(window, open->second.hole))
    open->second = {.hole = std::move(*rest), .closing = ++closings_};
  else
    forget(window);
}

void HoleEngine::forget(xcb_window_t window) {
  holes_.erase(window);
  cutter_.forget(window);
}

void HoleEngine::finish(xcb_window_t window) {
  const auto open = holes_.extract(window);
  if (open) cutter_.finish(window, open.mapped().hole);
}

void HoleEngine::finishLater(const std::vector<xcb_window_t>& windows) {
  std::vector<std::pair<xcb_window_t, std::uint64_t>> closings;
  for (const xcb_window_t window : windows) closings.emplace_back(window, *holes_.at(window).closing);
  const std::chrono::duration<double> time = timeForCompositors;
  runLoop_.after(time.count(), [weakEngine = weak_from_this(), closings = std::move(closings)] {
    const auto engine = weakEngine.lock();
    if (!engine) return;
    for (const auto& [window, closing] : closings) {
      const auto open = engine->holes_.find(window);
      if (open != engine->holes_.end() && open->second.closing == closing) engine->finish(window);
    }
    engine->connection_.flush();
  });
}

void HoleEngine::windowAdded(const scene::SceneWindow& /*window*/) { mayHaveChanged_ = true; }

void HoleEngine::windowRemoved(const scene::SceneWindow& window, scene::Departure departure) {
  mayHaveChanged_ = true;
  if (departure != scene::Departure::destroyed) return;
  book_.destroyed(window.id);
  forget(window.id);
}

void HoleEngine::windowChanged(const scene::SceneWindow& before, const scene::SceneWindow& after) {
  mayHaveChanged_ = true;
  const bool isResized = before.outer.width != after.outer.width || before.outer.height != after.outer.height;
  if (before.isViewable && !after.isViewable) book_.unmapped(after.id);
  if (isResized || (after.isViewable && !before.isViewable)) book_.renewed(after.id);
  if (isResized && holes_.contains(after.id)) resized_.push_back(after.id);
}

void HoleEngine::windowReshaped(const scene::SceneWindow& window) {
  mayHaveChanged_ = true;
  book_.reshaped(window.id);
}

std::vector<std::string> extensionsMissingForHoles(const xcb::Connection& connection) {
  std::vector<std::string> missing;
  if (!connection.has(xcb::Extension::render)) missing.emplace_back("RENDER");
  if (!connection.has(xcb::Extension::shape)) missing.emplace_back("SHAPE");
  return missing;
}

}  // namespace platform::linux::holes
