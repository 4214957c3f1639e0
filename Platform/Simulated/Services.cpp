#include "Platform/Simulated/Services.h"

#include <utility>

namespace platform::simulated {

bool ScreenCaptureAccess::preflight() {
  record_.expectMainThread("ScreenCaptureAccess::preflight");
  ++preflightCount_;
  if (nextPreflights.empty()) return isGranted;
  const bool answer = nextPreflights.front();
  nextPreflights.pop_front();
  return answer;
}

bool ScreenCaptureAccess::request() {
  record_.call("permission: request");
  ++requestCount_;
  isGranted = isGranted || grantsOnRequest;
  return isGranted;
}

LoginItemStatus LoginItem::status() const {
  record_.expectMainThread("LoginItem::status");
  return currentStatus;
}

std::expected<void, Error> LoginItem::registerItem() {
  record_.call("login item: register");
  if (failure) return std::unexpected(Error{*failure});
  currentStatus = LoginItemStatus::enabled;
  return {};
}

std::expected<void, Error> LoginItem::unregisterItem() {
  record_.call("login item: unregister");
  if (failure) return std::unexpected(Error{*failure});
  currentStatus = LoginItemStatus::notRegistered;
  return {};
}

void Workspace::openURL(const std::string& url) {
  record_.call("workspace: open " + url);
  openedURLs_.push_back(url);
}

bool SessionLock::isLocked() const {
  record_.expectMainThread("SessionLock::isLocked");
  return isLocked_;
}

void SessionLock::observeChanges(std::function<void()> observer) {
  record_.call("session lock: observe changes");
  if (!observer) misuse("SessionLock::observeChanges was given no observer");
  observers_.push_back(std::move(observer));
}

void SessionLock::setLocked(bool locked) {
  record_.call(locked ? "session lock: locked" : "session lock: unlocked");
  isLocked_ = locked;
  for (const auto& observer : observers_) observer();
}

std::optional<SettingValue> Settings::object(const std::string& key) const {
  record_.expectMainThread("Settings::object");
  reads_.push_back(key);
  const auto place = values.find(key);
  return place == values.end() ? std::nullopt : std::optional(place->second);
}

void Settings::set(const std::string& key, SettingValue value) {
  record_.call("settings: " + key);
  writes_.emplace_back(key, value);
  values.insert_or_assign(key, std::move(value));
}

}  // namespace platform::simulated
