// Files in memory.
//
// Threads: any; guarded by one lock.
// Contract: ends the process when a handle is used after it was closed.
#pragma once

#include <cstddef>
#include <expected>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "Platform/Files.h"
#include "Platform/Simulated/Record.h"

namespace platform::simulated {

// What fails from now on, on every file.
struct FileFailures {
  bool open = false;
  bool seek = false;
  bool handleWrite = false;
  bool wholeWrite = false;
  bool close = false;
  std::optional<std::size_t> spaceLeft = std::nullopt;  // bytes until the disk is full
};

class Files final : public platform::Files {
 public:
  explicit Files(Record& record) : record_(record) {}

  [[nodiscard]] bool fileExists(const std::string& path) const override;
  std::expected<std::unique_ptr<FileHandle>, Error> openForWriting(const std::string& path) override;
  std::expected<void, Error> write(const std::string& path, std::string_view bytes) override;

  // Makes the directory and all those above it.
  void makeDirectory(const std::string& path);
  void put(const std::string& path, std::string content);
  [[nodiscard]] std::optional<std::string> content(const std::string& path) const;
  [[nodiscard]] std::size_t fileCount() const;
  [[nodiscard]] int openHandleCount() const;
  void fail(const FileFailures& failures);

 private:
  class Handle;

  std::expected<void, Error> writeAt(const std::string& path, std::size_t position, std::string_view bytes);
  bool takeSpace(std::size_t bytes);

  Record& record_;
  mutable std::mutex mutex_;
  std::set<std::string> directories_{""};
  std::map<std::string, std::string> contents_;
  FileFailures failures_;
  int openHandles_ = 0;
};

}  // namespace platform::simulated
