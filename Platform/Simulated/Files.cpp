#include "Platform/Simulated/Files.h"

#include <algorithm>
#include <utility>

namespace platform::simulated {

namespace {

std::unexpected<Error> failure(const std::string& sentence) { return std::unexpected(Error{sentence}); }

std::string parent(const std::string& path) { return path.substr(0, path.find_last_of('/')); }

}  // namespace

class Files::Handle final : public FileHandle {
 public:
  Handle(Files& files, std::string path) : files_(files), path_(std::move(path)) { ++files_.openHandles_; }
  ~Handle() override {
    const std::lock_guard lock(files_.mutex_);
    if (isOpen_) --files_.openHandles_;
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  std::expected<void, Error> seekToEndOfFile() override {
    const std::lock_guard lock(files_.mutex_);
    expectOpen("seekToEndOfFile");
    if (files_.failures_.seek) return failure("The file cannot be positioned.");
    position_ = files_.contents_[path_].size();
    return {};
  }

  std::expected<void, Error> write(std::string_view bytes) override {
    files_.record_.note("files: append " + path_);
    const std::lock_guard lock(files_.mutex_);
    expectOpen("write");
    if (files_.failures_.handleWrite) return failure("The file cannot be written.");
    auto result = files_.writeAt(path_, position_, bytes);
    if (result) position_ += bytes.size();
    return result;
  }

  std::expected<void, Error> close() override {
    const std::lock_guard lock(files_.mutex_);
    expectOpen("close");
    isOpen_ = false;
    --files_.openHandles_;
    if (files_.failures_.close) return failure("The file could not be closed.");
    return {};
  }

 private:
  void expectOpen(const std::string& operation) const {
    if (!isOpen_) misuse("FileHandle::" + operation + " was called on a closed handle");
  }

  Files& files_;
  const std::string path_;
  std::size_t position_ = 0;
  bool isOpen_ = true;
};

bool Files::fileExists(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  return contents_.contains(path);
}

std::expected<std::unique_ptr<FileHandle>, Error> Files::openForWriting(const std::string& path) {
  record_.note("files: open " + path);
  const std::lock_guard lock(mutex_);
  if (!contents_.contains(path)) return failure("There is no such file.");
  if (failures_.open) return failure("The file may not be opened.");
  return std::make_unique<Handle>(*this, path);
}

std::expected<void, Error> Files::write(const std::string& path, std::string_view bytes) {
  record_.note("files: write " + path);
  const std::lock_guard lock(mutex_);
  if (!path.starts_with('/')) misuse("Files::write was given a path that is not absolute");
  if (!directories_.contains(parent(path))) return failure("There is no such directory.");
  if (failures_.wholeWrite) return failure("The file may not be written.");
  if (!takeSpace(bytes.size())) return failure("The disk is full.");
  contents_[path] = std::string(bytes);
  return {};
}

std::expected<void, Error> Files::writeAt(const std::string& path, std::size_t position, std::string_view bytes) {
  if (!takeSpace(bytes.size())) return failure("The disk is full.");
  std::string& content = contents_[path];
  content.resize(std::max(content.size(), position + bytes.size()));
  content.replace(position, bytes.size(), bytes);
  return {};
}

bool Files::takeSpace(std::size_t bytes) {
  if (!failures_.spaceLeft) return true;
  if (*failures_.spaceLeft < bytes) return false;
  *failures_.spaceLeft -= bytes;
  return true;
}

void Files::makeDirectory(const std::string& path) {
  const std::lock_guard lock(mutex_);
  for (std::string each = path; !each.empty(); each = parent(each)) directories_.insert(each);
}

void Files::put(const std::string& path, std::string content) {
  makeDirectory(parent(path));
  const std::lock_guard lock(mutex_);
  contents_[path] = std::move(content);
}

std::optional<std::string> Files::content(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  const auto place = contents_.find(path);
  return place == contents_.end() ? std::nullopt : std::optional(place->second);
}

std::size_t Files::fileCount() const {
  const std::lock_guard lock(mutex_);
  return contents_.size();
}

int Files::openHandleCount() const {
  const std::lock_guard lock(mutex_);
  return openHandles_;
}

void Files::fail(const FileFailures& failures) {
  const std::lock_guard lock(mutex_);
  failures_ = failures;
}

}  // namespace platform::simulated
