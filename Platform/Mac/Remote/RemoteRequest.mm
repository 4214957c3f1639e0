// The other end of the remote control: a command for the instance that runs.

#include <unistd.h>

#include <chrono>
#include <optional>

#include "Platform/Mac/Remote/MessagePort.h"
#include "Platform/Mac/Remote/RemoteProtocol.h"
#include "Platform/RemoteControl.h"

namespace platform {
namespace {

using namespace mac::remote;

constexpr CFTimeInterval heartbeat = 1;  // seconds between two looks whether the other end still lives

struct Conversation {
  const std::function<void()>& onQuestion;
  std::optional<RemoteReply> reply{};

  static CFDataRef receive(CFMessagePortRef /*port*/, SInt32 number, CFDataRef data, void* context) {
    auto& conversation = *static_cast<Conversation*>(context);
    if (number != questionNumber) {
      conversation.reply = RemoteReply{number, contentOf(data)};
    } else if (conversation.onQuestion) {
      conversation.onQuestion();
    }
    return nullptr;
  }
};

std::chrono::milliseconds since(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
}

}  // namespace

std::expected<RemoteReply, Error> sendToRunningInstance(const std::vector<std::string>& arguments,
                                                        std::chrono::milliseconds limit,
                                                        const std::function<void()>& onQuestion) {
  const auto start = std::chrono::steady_clock::now();
  const auto instance = remotePort(commandPortName());
  if (!instance) return std::unexpected(Error{sentence::notRunning});

  Conversation conversation{onQuestion};
  const std::string name = replyPortName(getpid());
  const auto own = makePort(name, &Conversation::receive, &conversation);
  if (!own) return std::unexpected(Error{sentence::noReplyPort});

  std::vector<std::string> words{name};
  words.insert(words.end(), arguments.begin(), arguments.end());
  bool isAlive = sendMessage(instance.get(), requestNumber, bytesOf(words));
  while (isAlive && !conversation.reply && since(start) < limit) {
    // Asked before listening: the last words of an instance that ends are still heard.
    isAlive = CFMessagePortIsValid(instance.get());
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, heartbeat, true);
  }
  CFMessagePortInvalidate(own.get());
  if (!conversation.reply) return std::unexpected(Error{sentence::noAnswer});
  return *conversation.reply;
}

}  // namespace platform
