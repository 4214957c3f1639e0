#include "Quillfade/Settings/StoredValues.h"

#include <algorithm>
#include <string_view>

namespace quillfade {
namespace {

template <class Type>
std::optional<Type> stored(const std::optional<platform::SettingValue>& value) {
  if (!value || !std::holds_alternative<Type>(*value)) return std::nullopt;
  return std::get<Type>(*value);
}

bool affirms(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
  return !text.empty() && std::string_view("YyTt123456789").find(text.front()) != std::string_view::npos;
}

}  // namespace

std::optional<std::int64_t> asInteger(const std::optional<platform::SettingValue>& value) {
  if (const auto boolean = stored<bool>(value)) return *boolean ? 1 : 0;
  return stored<std::int64_t>(value);
}

std::optional<bool> asBool(const std::optional<platform::SettingValue>& value) {
  if (const auto integer = stored<std::int64_t>(value)) {
    if (*integer == 0 || *integer == 1) return *integer == 1;
    return std::nullopt;
  }
  return stored<bool>(value);
}

std::optional<std::string> asString(const std::optional<platform::SettingValue>& value) {
  return stored<std::string>(value);
}

bool readBool(const std::optional<platform::SettingValue>& value) {
  if (const auto integer = stored<std::int64_t>(value)) return *integer != 0;
  if (const auto number = stored<double>(value)) return *number != 0;
  if (const auto text = stored<std::string>(value)) return affirms(*text);
  return stored<bool>(value).value_or(false);
}

}  // namespace quillfade
