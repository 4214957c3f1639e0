#include "Platform/Linux/Settings/RulesJson.h"

#include <fcntl.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cerrno>
#include <utility>

#include "Platform/Linux/Posix/AtomicFile.h"
#include "Platform/Linux/Posix/FileDescriptor.h"
#include "Platform/Linux/Posix/SystemError.h"
#include "Platform/Linux/Posix/UserDirectories.h"

namespace platform::linux::settings {

namespace {

bool isSameVersion(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
         a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec &&
         a.st_ctim.tv_sec == b.st_ctim.tv_sec && a.st_ctim.tv_nsec == b.st_ctim.tv_nsec;
}

std::optional<struct stat> versionOf(const std::string& path) {
  struct stat version{};
  return ::stat(path.c_str(), &version) == 0 ? std::optional(version) : std::nullopt;
}

std::optional<std::string> textOf(const QJsonValue& value) {
  return value.isString() ? std::optional(value.toString().toStdString()) : std::nullopt;
}

void addMember(const std::string& member, const QJsonValue& value, RulesFileEntries& entries) {
  if (value.isArray()) {
    const QJsonArray list = value.toArray();
    for (qsizetype i = 0; i < list.size(); ++i) entries.push_back({member, std::to_string(i + 1), textOf(list.at(i))});
  } else if (value.isObject()) {
    const QJsonObject object = value.toObject();
    for (auto named = object.begin(); named != object.end(); ++named) {
      entries.push_back({member, named.key().toStdString(), textOf(named.value())});
    }
  } else {
    entries.push_back({member, {}, textOf(value)});
  }
}

}  // namespace

std::expected<RulesFileEntries, Error> rulesFromJson(const std::string& json) {
  QJsonParseError error;
  const auto document = QJsonDocument::fromJson({json.data(), static_cast<qsizetype>(json.size())}, &error);
  if (error.error != QJsonParseError::NoError) {
    const auto before = json.substr(0, static_cast<std::size_t>(std::max(0, error.offset)));
    const auto line = 1 + std::ranges::count(before, '\n');
    return std::unexpected(
        Error{"Invalid JSON at line " + std::to_string(line) + " (" + error.errorString().toStdString() + ")."});
  }
  if (!document.isObject()) return std::unexpected(Error{"The file must contain one JSON object, in curly brackets."});
  RulesFileEntries entries;
  const QJsonObject object = document.object();
  for (auto member = object.begin(); member != object.end(); ++member) {
    addMember(member.key().toStdString(), member.value(), entries);
  }
  return entries;
}

RulesJson::Content RulesJson::read() {
  const auto version = versionOf(path_);
  const bool isKnown = version && version_ && isSameVersion(*version, *version_);
  if (!isKnown) content_ = version ? readAfresh() : Content{std::nullopt};
  version_ = version;
  return content_;
}

RulesJson::Content RulesJson::readAfresh() const {
  const std::string target = posix::followLinks(path_);
  const auto file = posix::openRegularFile(target, O_RDONLY);
  const auto bytes = file ? posix::readAll(file->get()) : std::unexpected(file.error());
  if (!bytes) return std::unexpected(posix::systemError("Could not read", target, bytes.error()));
  return rulesFromJson(*bytes);
}

std::string rulesPath() { return posix::configurationDirectory() + "/quillfade/rules.json"; }

}  // namespace platform::linux::settings

namespace platform {

std::unique_ptr<RulesFile> makeRulesFile() {
  return std::make_unique<linux::settings::RulesJson>(linux::settings::rulesPath());
}

}  // namespace platform
