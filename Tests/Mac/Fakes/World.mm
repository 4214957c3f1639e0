#import "Tests/Mac/Fakes/World.h"

#include <utility>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/Capture.h"
#import "Tests/Mac/Fakes/MessagePorts.h"
#import "Tests/Mac/Fakes/Windows.h"
#import "Tests/Mac/Runtime/Dispatch.h"
#import "Tests/Mac/Runtime/Timers.h"

namespace fake {
namespace {

World* current = nullptr;

void expectNone(int count, const char* what) {
  if (count != 0) misuse(std::to_string(count) + ' ' + what + " left");
}

long objectsBefore = 0;
long blocksBefore = 0;

}  // namespace

World& world() {
  if (current == nullptr) misuse("there is no Mac any more");
  return *current;
}

World::World() {
  if (current != nullptr) misuse("two Macs at once");
  current = this;
  files.directories.insert(home + "/Library/Logs");
  (void)dispatch_get_main_queue();  // which never goes
  (void)takeRecord();
  objectsBefore = liveObjects();
  blocksBefore = liveBlocks();
  setAfterTurn(layOutWindows);
}

World::~World() {
  script = nullptr;
  duringAlert = nullptr;
  dropWork();
  setTracking(false);
  dropHeld();
  expectNone(static_cast<int>(windowsOnScreen().size()), "windows on the screen");
  expectNone(liveWindows(), "windows");
  expectNone(static_cast<int>(runningStreams().size()), "running streams");
  forgetStreams();
  dropWork();
  expectNone(liveStreams(), "streams");
  expectNone(liveTimers(), "timers");
  expectNone(monitors(), "monitors");
  expectNone(statusItems(), "status items");
  expectNone(hotKeyHandlers(), "handlers of hot keys");
  expectNone(static_cast<int>(hotKeys().size()), "hot keys");
  expectNone(files.openHandles, "open files");
  expectNone(liveMessagePorts(), "message ports");
  expectNone(liveQueues(), "queues");
  @autoreleasepool {
    dropSharedObjects();
  }
  expectNone(static_cast<int>(liveObjects() - objectsBefore), "objects");
  expectNone(static_cast<int>(liveBlocks() - blocksBefore), "blocks");
  setAfterTurn(nullptr);
  current = nullptr;
}

void inPool(const std::function<void()>& work) {
  @autoreleasepool {
    work();
  }
}

void event(const std::function<void()>& work) {
  EXPECT_MAIN_THREAD();
  @autoreleasepool {
    work();
    layOutWindows();
  }
}

}  // namespace fake
