// Files in memory. The log is written from several threads.
#import <Foundation/Foundation.h>

#include <mutex>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/World.h"

namespace {

fake::Files& files() { return fake::world().files; }

bool isInDirectory(const std::string& path) {
  return files().directories.contains(path.substr(0, path.find_last_of('/')));
}

BOOL fail(NSError** error, const char* description) {
  if (!files().failures.withoutReason) *error = [NSError errorOf:description];
  return NO;
}

[[noreturn]] void raise(const char* reason) {
  objc_exception_throw([NSException exceptionNamed:"NSFileHandleOperationException"
                                            reason:files().failures.withoutReason ? "" : reason]);
  std::abort();
}

}  // namespace

@implementation NSFileManager
+ (NSFileManager*)defaultManager {
  return fake::sharedObject(self);
}
- (BOOL)fileExistsAtPath:(NSString*)path {
  const std::lock_guard lock(files().mutex);
  return files().contents.contains(path.text);
}
@end

@implementation NSData {
  std::string _content;
}
+ (instancetype)dataWithBytes:(const void*)bytes length:(NSUInteger)length {
  NSData* made = [[self alloc] init];
  made->_content.assign(static_cast<const char*>(bytes), length);
  return made;
}
- (NSUInteger)length {
  return _content.size();
}
- (const void*)bytes {
  return _content.empty() ? nullptr : _content.data();
}
- (const std::string&)content {
  return _content;
}
- (BOOL)writeToURL:(NSURL*)link options:(NSDataWritingOptions)options error:(NSError**)error {
  if (options != 0) fake::misuse("a file is replaced instead of written");
  const std::lock_guard lock(files().mutex);
  if (files().failures.whole || !isInDirectory(link.path)) return fail(error, "The file could not be written.");
  files().contents[link.path] = self.content;
  return YES;
}
@end

@implementation NSFileHandle {
  std::string _path;
  std::size_t _place;
  BOOL _isOpen;
}
+ (instancetype)fileHandleForWritingToURL:(NSURL*)link error:(NSError**)error {
  const std::lock_guard lock(files().mutex);
  if (files().failures.open || !files().contents.contains(link.path)) {
    fail(error, "The file could not be opened.");
    return nil;
  }
  NSFileHandle* made = [[self alloc] init];
  made->_path = link.path;
  made->_isOpen = YES;
  ++files().openHandles;
  return made;
}
- (void)dealloc {
  const std::lock_guard lock(files().mutex);
  if (_isOpen) --files().openHandles;  // as the system does
}
- (unsigned long long)seekToEndOfFile {
  const std::lock_guard lock(files().mutex);
  if (!_isOpen || files().failures.seek) raise("There is no end of the file.");
  _place = files().contents[_path].size();
  return _place;
}
- (void)writeData:(NSData*)data {
  const std::lock_guard lock(files().mutex);
  if (!_isOpen || files().failures.write) raise("There is no space left.");
  std::string& content = files().contents[_path];
  content.replace(_place, data.content.size(), data.content);
  _place += data.content.size();
}
- (BOOL)closeAndReturnError:(NSError**)error {
  const std::lock_guard lock(files().mutex);
  if (!_isOpen) fake::misuse("a file was closed twice");
  _isOpen = NO;
  --files().openHandles;
  return files().failures.close ? fail(error, "The file could not be closed.") : YES;
}
@end
