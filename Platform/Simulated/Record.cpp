#include "Platform/Simulated/Record.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace platform::simulated {

void misuse(const std::string& what) {
  std::fprintf(stderr, "Misuse of the desktop: %s\n", what.c_str());
  std::fflush(stderr);
  std::abort();
}

void expectFinite(const Rect& rect, const std::string& operation) {
  const bool finite = std::isfinite(rect.origin.x) && std::isfinite(rect.origin.y) && std::isfinite(rect.size.width) &&
                      std::isfinite(rect.size.height);
  if (!finite) misuse(operation + " was given a rectangle that is not finite");
}

void runOnAnotherThread(const std::function<void()>& work) { std::thread(work).join(); }

void Record::expectMainThread(const std::string& operation) const {
  if (std::this_thread::get_id() != mainThread_) misuse(operation + " was called off the main thread");
}

void Record::call(const std::string& entry) {
  expectMainThread(entry);
  note(entry);
}

void Record::note(const std::string& entry) {
  const std::lock_guard lock(mutex_);
  entries_.push_back(entry);
}

std::vector<std::string> Record::entries() const {
  const std::lock_guard lock(mutex_);
  return entries_;
}

std::vector<std::string> Record::startingWith(const std::string& prefix) const {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> found;
  std::ranges::copy_if(entries_, std::back_inserter(found),
                       [&](const std::string& entry) { return entry.starts_with(prefix); });
  return found;
}

std::optional<std::size_t> Record::indexOf(const std::string& entry) const {
  const std::lock_guard lock(mutex_);
  const auto place = std::ranges::find(entries_, entry);
  if (place == entries_.end()) return std::nullopt;
  return static_cast<std::size_t>(place - entries_.begin());
}

void Record::clear() {
  const std::lock_guard lock(mutex_);
  entries_.clear();
}

}  // namespace platform::simulated
