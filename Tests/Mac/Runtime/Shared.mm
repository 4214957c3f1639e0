#import "Tests/Mac/Runtime/Shared.h"

#include <map>
#include <mutex>
#include <string>

#import "Tests/Mac/Runtime/Runtime.h"

namespace {

struct Objects {
  std::mutex mutex;
  std::map<std::string, id> byClass;
};
Objects& objects() {
  static Objects& made = *new Objects;
  return made;
}

}  // namespace

id fake::sharedObject(Class type) {
  const std::lock_guard lock(objects().mutex);
  __strong id& shared = objects().byClass[class_getName(type)];
  if (shared == nil) shared = [[type alloc] init];
  return shared;
}

void fake::dropSharedObjects() {
  std::map<std::string, id> dropped;
  const std::lock_guard lock(objects().mutex);
  dropped.swap(objects().byClass);
}
