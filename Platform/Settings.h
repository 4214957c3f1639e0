// A persistent store of small typed values under string keys.
//
// Threads: main thread only.
// Failure: reading a value that is absent, unreadable or of another type gives nothing; writing never fails visibly. A
// value that was set reads back in this process even if it could not be saved.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace platform {

// A value keeps the type it was written with. A whole number that fits is an integer, however it was written.
using SettingValue = std::variant<bool, std::int64_t, double, std::string>;

class Settings {
 public:
  virtual ~Settings() = default;
  [[nodiscard]] virtual std::optional<SettingValue> object(const std::string& key) const = 0;
  virtual void set(const std::string& key, SettingValue value) = 0;
};

}  // namespace platform
