// Blocks, which the Objective-C runtime does not bring along: their classes, and the functions that the compiler calls
// to copy them and what they capture. The layouts are the language's.
#import "Tests/Mac/Runtime/Runtime.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace {

struct Descriptor {
  unsigned long reserved;
  unsigned long size;
  void (*copyCaptured)(void* to, const void* from);
  void (*disposeCaptured)(const void* block);
};

struct Block {
  void* type;
  std::atomic<int> flags;
  int reserved;
  void* function;
  const Descriptor* descriptor;
};

// A captured variable that is shared by its scope and the blocks.
struct SharedVariable {
  void* type;
  SharedVariable* current;
  std::atomic<int> flags;
  unsigned size;
  void (*keep)(void* to, void* from);
  void (*destroy)(void* variable);
};

constexpr int countMask = 0xffff;
constexpr int hasCaptured = 1 << 25;

enum Kind { object = 3, block = 7, sharedVariable = 8, kindMask = 15, isCopyOfShared = 128 };

std::atomic<long> blocks;

}  // namespace

extern "C" {
// The names that the compiler gives the classes below, see the linker's options.
extern char _NSConcreteStackBlock[];
extern char _NSConcreteMallocBlock[];
extern char _NSConcreteGlobalBlock[];

void* _Block_copy(const void* raw) {
  auto* const source = static_cast<Block*>(const_cast<void*>(raw));
  if (source == nullptr || source->type == _NSConcreteGlobalBlock) return source;
  if (source->type == _NSConcreteMallocBlock) {
    ++source->flags;
    return source;
  }
  auto* const made = static_cast<Block*>(std::malloc(source->descriptor->size));
  std::memcpy(static_cast<void*>(made), source, source->descriptor->size);
  made->type = _NSConcreteMallocBlock;
  made->flags = (source->flags & ~countMask) | 1;
  if ((made->flags & hasCaptured) != 0) source->descriptor->copyCaptured(made, source);
  ++blocks;
  return made;
}

void _Block_release(const void* raw) {
  auto* const released = static_cast<Block*>(const_cast<void*>(raw));
  if (released == nullptr || released->type != _NSConcreteMallocBlock) return;
  if ((--released->flags & countMask) != 0) return;
  if ((released->flags & hasCaptured) != 0) released->descriptor->disposeCaptured(released);
  --blocks;
  std::free(released);
}

void _Block_object_assign(void* to, const void* from, int flags) {
  switch (flags & kindMask) {
    case block:
      *static_cast<void**>(to) = _Block_copy(from);
      return;
    case object: {
      id captured = (id) const_cast<void*>(from);
      *static_cast<id*>(to) = (flags & isCopyOfShared) != 0 ? captured : [captured retain];
      return;
    }
    case sharedVariable: {
      auto* const current = static_cast<SharedVariable*>(const_cast<void*>(from))->current;
      if ((current->flags & countMask) != 0) {
        ++current->flags;
        *static_cast<void**>(to) = current;
        return;
      }
      auto* const made = static_cast<SharedVariable*>(std::malloc(current->size));
      std::memcpy(static_cast<void*>(made), current, current->size);
      made->flags = (current->flags & ~countMask) | 2;  // its scope and this block
      made->current = made;
      current->current = made;
      if ((current->flags & hasCaptured) != 0) current->keep(made, current);
      *static_cast<void**>(to) = made;
      return;
    }
    default:
      std::abort();
  }
}

void _Block_object_dispose(const void* captured, int flags) {
  switch (flags & kindMask) {
    case block:
      _Block_release(captured);
      return;
    case object:
      if ((flags & isCopyOfShared) == 0) [(id) const_cast<void*>(captured) release];
      return;
    case sharedVariable: {
      auto* const current = static_cast<SharedVariable*>(const_cast<void*>(captured))->current;
      if ((current->flags & countMask) == 0 || (--current->flags & countMask) != 0) return;
      if ((current->flags & hasCaptured) != 0) current->destroy(current);
      std::free(current);
      return;
    }
    default:
      std::abort();
  }
}
}

long fake::liveBlocks() { return blocks; }

#define BLOCK_CLASS(Name)                   \
  __attribute__((objc_root_class))          \
  @interface Name {                         \
    Class isa;                              \
  }                                         \
  @end                                      \
  @implementation Name                      \
  +(void)load {                             \
  }                                         \
  -(id)copy {                               \
    return (id)_Block_copy(self);           \
  }                                         \
  -(id)retain {                             \
    return (id)_Block_copy(self);           \
  }                                         \
  -(void)release {                          \
    _Block_release(self);                   \
  }                                         \
  -(id)autorelease {                        \
    return _objc_rootAutorelease((id)self); \
  }                                         \
  @end

BLOCK_CLASS(FakeStackBlock)
BLOCK_CLASS(FakeMallocBlock)
BLOCK_CLASS(FakeGlobalBlock)
