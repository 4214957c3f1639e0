// The settings as one JSON object in a file of the user's.
//
// Threads: main thread only.
// Failure: a file that cannot be understood is moved aside, and nothing in it is lost. One that cannot be read, or is
// no regular file, is left alone. Settings that cannot be saved still hold for this process. Each failure is reported
// once, in one line on standard error.
#pragma once

#include <QJsonObject>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Settings.h"

namespace platform::linux::settings {

class SettingsFile : public Settings {
 public:
  // Reads the file, which need not exist.
  explicit SettingsFile(std::string path);

  [[nodiscard]] std::optional<SettingValue> object(const std::string& key) const override;
  // The value is on disk when this returns.
  void set(const std::string& key, SettingValue value) override;

 private:
  void load();
  void moveAside(const std::string& target);
  void save();
  void reportOnce(const std::string& reason);

  std::string path_;
  QJsonObject values_;  // everything in the file, known or not
  bool mayReplaceFile_ = true;
  bool reported_ = false;
};

// Why the settings in this file cannot be read or kept, as a sentence; nothing when all is well, even if the file does
// not exist yet. Does not touch the file.
[[nodiscard]] std::optional<std::string> settingsFault(const std::string& path);

// What is stored in this file under these keys. Does not touch the file.
[[nodiscard]] std::map<std::string, SettingValue> storedSettings(const std::string& path,
                                                                 const std::vector<std::string>& keys);

// Where this user's settings are.
[[nodiscard]] std::string settingsPath();

}  // namespace platform::linux::settings
