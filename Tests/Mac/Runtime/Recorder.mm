// The adapter's objects look up every message here instead of in the runtime (the build renames the function in them),
// so nothing needs to be recorded by hand.
#import "Tests/Mac/Runtime/Recorder.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string_view>
#include <thread>
#include <utility>

#import "Tests/Mac/Runtime/Dispatch.h"
#import "Tests/Mac/Runtime/Runtime.h"

namespace {

const std::thread::id mainThread = std::this_thread::get_id();

struct Lines {
  std::mutex mutex;
  std::vector<std::string> all;
};
Lines& lines() {
  static Lines& made = *new Lines;  // threads may outlive the exit
  return made;
}

// By the beginning of the class's name: what the system allows on any thread, and what the adapter's own classes say of
// themselves. Everything else belongs to the main thread.
constexpr std::array<std::string_view, 12> anyThread{"NSString",       "NSConstantString", "NSNumber", "NSArray",
                                                     "NSMutableArray", "NSDictionary",     "NSError",  "NSData",
                                                     "NSURL",          "NSException",      "NSFile",   "Fake"};
constexpr std::array<std::string_view, 4> alsoAnyThread{"NSProcessInfo", "NSBundle", "QLFStreamForwarder", "NSObject"};

bool mayBeAnywhere(std::string_view type) {
  const auto fits = [type](std::string_view beginning) { return type.starts_with(beginning); };
  return std::ranges::any_of(anyThread, fits) || std::ranges::any_of(alsoAnyThread, fits);
}

void pass(id object, SEL selector) {
  if (object == nil) return;
  Class type = object_getClass(object);
  const std::string name = class_getName(type);
  // Where a text came from says nothing: the compiler made some, the adapter others.
  const std::string line = std::string{class_isMetaClass(type) ? "+[" : "-["} +
                           (name == "NSConstantString" ? "NSString" : name) + ' ' + sel_getName(selector) + ']';
  if (!mayBeAnywhere(name)) fake::expectMainThread(line.c_str());
  // The output of a stream changes between two frames only.
  if (line == "-[QLFStreamForwarder close]" && fake::currentQueue().empty()) fake::misuse(line + " off its queue");
  fake::record(line);
}

}  // namespace

namespace fake {

void misuse(const std::string& what) {
  std::fprintf(stderr, "Misuse: %s\n", what.c_str());
  std::abort();
}

bool isMainThread() { return std::this_thread::get_id() == mainThread; }

void expectMainThread(const char* call) {
  if (!isMainThread()) misuse(std::string{call} + " off the main thread");
}

void record(std::string line) {
  const std::lock_guard lock(lines().mutex);
  lines().all.push_back(std::move(line));
}

std::vector<std::string> takeRecord() {
  const std::lock_guard lock(lines().mutex);
  return std::exchange(lines().all, {});
}

}  // namespace fake

extern "C" {
Method recorded_msg_lookup(id object, SEL selector);
Method recorded_msg_lookup_stret(id object, SEL selector);

Method recorded_msg_lookup(id object, SEL selector) {
  pass(object, selector);
  return objc_msg_lookup(object, selector);
}

Method recorded_msg_lookup_stret(id object, SEL selector) {
  pass(object, selector);
  return objc_msg_lookup_stret(object, selector);
}
}
