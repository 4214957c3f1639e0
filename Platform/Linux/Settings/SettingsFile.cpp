#include "Platform/Linux/Settings/SettingsFile.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <QJsonDocument>
#include <cerrno>
#include <filesystem>
#include <iostream>
#include <limits>
#include <utility>

#include "Platform/Linux/Posix/AtomicFile.h"
#include "Platform/Linux/Posix/FileDescriptor.h"
#include "Platform/Linux/Posix/SystemError.h"
#include "Platform/Linux/Posix/UserDirectories.h"

namespace platform::linux::settings {

namespace {

void tell(const std::string& line) { std::cerr << "quillfade: " << line << std::endl; }

std::optional<QJsonObject> parse(const std::string& bytes) {
  if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) return std::nullopt;
  const auto document = QJsonDocument::fromJson({bytes.data(), static_cast<qsizetype>(bytes.size())});
  if (!document.isObject()) return std::nullopt;
  return document.object();
}

// Never replaces anything. Returns zero or the error number.
int renameToUnusedName(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // The file system lacks this operation; a hard link never replaces anything either.
  if (::link(from.c_str(), to.c_str()) != 0) return errno;
  return ::unlink(from.c_str()) == 0 ? 0 : errno;
}

QJsonValue jsonValue(const SettingValue& value) {
  if (const bool* flag = std::get_if<bool>(&value)) return *flag;
  if (const std::int64_t* number = std::get_if<std::int64_t>(&value)) return QJsonValue(qint64{*number});
  if (const double* number = std::get_if<double>(&value)) return *number;
  return QString::fromStdString(std::get<std::string>(value));
}

std::optional<SettingValue> settingValue(const QJsonValue& value) {
  if (value.isBool()) return value.toBool();
  if (value.isString()) return value.toString().toStdString();
  if (!value.isDouble()) return std::nullopt;
  // A number that is not whole, or too large, gives the default, whatever the default is.
  const qint64 number = value.toInteger(0);
  if (number != value.toInteger(1)) return value.toDouble();
  return std::int64_t{number};
}

}  // namespace

SettingsFile::SettingsFile(std::string path) : path_(std::move(path)) { load(); }

std::optional<SettingValue> SettingsFile::object(const std::string& key) const {
  return settingValue(values_.value(QString::fromStdString(key)));
}

void SettingsFile::set(const std::string& key, SettingValue value) {
  values_.insert(QString::fromStdString(key), jsonValue(value));
  save();
}

void SettingsFile::load() {
  const std::string target = posix::followLinks(path_);
  const auto file = posix::openRegularFile(target, O_RDONLY);
  if (!file) {
    mayReplaceFile_ = file.error() == ENOENT;
    if (!mayReplaceFile_) reportOnce(posix::systemError("Could not read", target, file.error()).localizedDescription);
    return;
  }
  const auto bytes = posix::readAll(file->get());
  if (!bytes) {
    mayReplaceFile_ = false;
    reportOnce(posix::systemError("Could not read", target, bytes.error()).localizedDescription);
    return;
  }
  if (auto values = parse(*bytes))
    values_ = *std::move(values);
  else
    moveAside(target);
}

void SettingsFile::moveAside(const std::string& target) {
  const std::string first = target + ".damaged";
  std::string aside = first;
  int error = renameToUnusedName(target, aside);
  for (int number = 1; error == EEXIST; ++number) {
    aside = first + "." + std::to_string(number);
    error = renameToUnusedName(target, aside);
  }
  mayReplaceFile_ = error == 0;
  if (mayReplaceFile_)
    tell("The settings in " + target + " are damaged. They were moved to " + aside + "; defaults apply.");
  else
    reportOnce("The settings are damaged. " +
               posix::systemError("Could not move aside", target, error).localizedDescription);
}

void SettingsFile::save() {
  if (!mayReplaceFile_) return;
  const QByteArray bytes = QJsonDocument(values_).toJson();
  if (auto saved = posix::replaceFile(path_, bytes.toStdString()); !saved)
    reportOnce(saved.error().localizedDescription);
}

void SettingsFile::reportOnce(const std::string& reason) {
  if (std::exchange(reported_, true)) return;
  tell(reason + " Settings will not be saved.");
}

std::optional<std::string> settingsFault(const std::string& path) {
  const std::string target = posix::followLinks(path);
  const auto file = posix::openRegularFile(target, O_RDONLY);
  const auto bytes = file ? posix::readAll(file->get()) : std::unexpected(file.error());
  if (!bytes && bytes.error() != ENOENT)
    return posix::systemError("Could not read", target, bytes.error()).localizedDescription;
  if (bytes && !parse(*bytes)) return target + " is damaged: it is not a single JSON object.";
  // The file is replaced as a whole, so the directory counts; a missing one will be created.
  auto directory = std::filesystem::path(target).parent_path();
  while (!directory.empty() && !std::filesystem::exists(directory) && directory != directory.parent_path()) {
    directory = directory.parent_path();
  }
  if (!posix::isWritableDirectory(directory)) return directory.string() + " is not writable.";
  return std::nullopt;
}

std::map<std::string, SettingValue> storedSettings(const std::string& path, const std::vector<std::string>& keys) {
  const auto file = posix::openRegularFile(posix::followLinks(path), O_RDONLY);
  const auto bytes = file ? posix::readAll(file->get()) : std::unexpected(file.error());
  const QJsonObject values = bytes ? parse(*bytes).value_or(QJsonObject{}) : QJsonObject{};
  std::map<std::string, SettingValue> stored;
  for (const std::string& key : keys) {
    if (auto value = settingValue(values.value(QString::fromStdString(key)))) stored.emplace(key, *std::move(value));
  }
  return stored;
}

std::string settingsPath() { return posix::configurationDirectory() + "/quillfade/settings.json"; }

}  // namespace platform::linux::settings
