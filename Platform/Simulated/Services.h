// The small services of a desktop: permission, login item, links, lock screen, settings, the user's rules,
// notifications, translations.
//
// Threads: main thread only.
#pragma once

#include <deque>
#include <expected>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/LoginItem.h"
#include "Platform/Notifications.h"
#include "Platform/Permission.h"
#include "Platform/RulesFile.h"
#include "Platform/SessionLock.h"
#include "Platform/Settings.h"
#include "Platform/Simulated/Record.h"
#include "Platform/Texts.h"
#include "Platform/Workspace.h"

namespace platform::simulated {

class ScreenCaptureAccess final : public platform::ScreenCaptureAccess {
 public:
  explicit ScreenCaptureAccess(Record& record) : record_(record) {}

  [[nodiscard]] bool preflight() override;
  bool request() override;

  bool isGranted = true;
  bool grantsOnRequest = false;
  std::deque<bool> nextPreflights;  // answers to give before `isGranted` counts

  [[nodiscard]] int preflightCount() const { return preflightCount_; }
  [[nodiscard]] int requestCount() const { return requestCount_; }

 private:
  Record& record_;
  int preflightCount_ = 0;
  int requestCount_ = 0;
};

class LoginItem final : public platform::LoginItem {
 public:
  explicit LoginItem(Record& record) : record_(record) {}

  [[nodiscard]] LoginItemStatus status() const override;
  std::expected<void, Error> registerItem() override;
  std::expected<void, Error> unregisterItem() override;

  LoginItemStatus currentStatus = LoginItemStatus::notRegistered;
  std::optional<std::string> failure;  // if set, refuses every change with this description

 private:
  Record& record_;
};

class Workspace final : public platform::Workspace {
 public:
  explicit Workspace(Record& record) : record_(record) {}
  void openURL(const std::string& url) override;
  [[nodiscard]] const std::vector<std::string>& openedURLs() const { return openedURLs_; }

 private:
  Record& record_;
  std::vector<std::string> openedURLs_;
};

class SessionLock final : public platform::SessionLock {
 public:
  explicit SessionLock(Record& record) : record_(record) {}

  [[nodiscard]] bool isLocked() const override;
  void observeChanges(std::function<void()> observer) override;

  // Tells the observers.
  void setLocked(bool locked);

 private:
  Record& record_;
  bool isLocked_ = false;
  std::vector<std::function<void()>> observers_;
};

class Settings final : public platform::Settings {
 public:
  explicit Settings(Record& record) : record_(record) {}

  [[nodiscard]] std::optional<SettingValue> object(const std::string& key) const override;
  void set(const std::string& key, SettingValue value) override;

  // Values left by an earlier run of the program; not among the writes.
  std::map<std::string, SettingValue> values;
  [[nodiscard]] const std::vector<std::pair<std::string, SettingValue>>& writes() const { return writes_; }
  [[nodiscard]] const std::vector<std::string>& reads() const { return reads_; }

 private:
  Record& record_;
  std::vector<std::pair<std::string, SettingValue>> writes_;
  mutable std::vector<std::string> reads_;
};

class RulesFile final : public platform::RulesFile {
 public:
  [[nodiscard]] std::string path() const override { return "/home/presenter/.config/quillfade/rules.json"; }
  std::expected<std::optional<RulesFileEntries>, Error> read() override { return content; }

  std::expected<std::optional<RulesFileEntries>, Error> content = std::nullopt;
};

class Notifications final : public platform::Notifications {
 public:
  void showOnce(const std::string& name, const Notification& notification) override {
    if (shownBefore.insert(name).second) shown.push_back(notification);
  }

  std::set<std::string> shownBefore;
  std::vector<Notification> shown;
};

class Texts final : public platform::Texts {
 public:
  [[nodiscard]] std::string translated(std::string_view english) const override {
    const auto found = translations.find(std::string{english});
    return found == translations.end() ? std::string{english} : found->second;
  }

  std::map<std::string, std::string> translations;
};

}  // namespace platform::simulated
