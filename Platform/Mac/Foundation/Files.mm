#include "Platform/Mac/Foundation/Files.h"

#import <Foundation/Foundation.h>

#include "Platform/Mac/Foundation/Bridge.h"

namespace platform::mac::foundation {
namespace {

using Result = std::expected<void, Error>;

NSURL* fileURL(const std::string& path) { return [NSURL fileURLWithPath:nsString(path)]; }

Error fromException(NSException* exception) {
  return {stdString(exception.reason != nil ? exception.reason : exception.name)};
}

class OpenFile final : public FileHandle {
 public:
  explicit OpenFile(NSFileHandle* handle) : handle_(handle) {}

  Result seekToEndOfFile() override {
    @try {
      [handle_ seekToEndOfFile];
    } @catch (NSException* exception) {
      return std::unexpected(fromException(exception));
    }
    return {};
  }

  Result write(std::string_view bytes) override {
    @try {
      [handle_ writeData:nsData(bytes)];
    } @catch (NSException* exception) {
      return std::unexpected(fromException(exception));
    }
    return {};
  }

  // A handle that goes while it is open closes its file by itself.
  Result close() override {
    NSError* error = nil;
    if ([handle_ closeAndReturnError:&error]) return {};
    return std::unexpected(fromNSError(error));
  }

 private:
  NSFileHandle* handle_;
};

}  // namespace

bool Files::fileExists(const std::string& path) const {
  return [[NSFileManager defaultManager] fileExistsAtPath:nsString(path)];
}

std::expected<std::unique_ptr<FileHandle>, Error> Files::openForWriting(const std::string& path) {
  NSError* error = nil;
  NSFileHandle* handle = [NSFileHandle fileHandleForWritingToURL:fileURL(path) error:&error];
  if (handle == nil) return std::unexpected(fromNSError(error));
  return std::make_unique<OpenFile>(handle);
}

Result Files::write(const std::string& path, std::string_view bytes) {
  NSError* error = nil;
  if ([nsData(bytes) writeToURL:fileURL(path) options:NSDataWritingOptions {} error:&error]) return {};
  return std::unexpected(fromNSError(error));
}

}  // namespace platform::mac::foundation
