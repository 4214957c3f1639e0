#include "Platform/Mac/Remote/RemoteControl.h"

#include <iostream>
#include <utility>

#include "Platform/Mac/Remote/MessagePort.h"
#include "Platform/Mac/Remote/RemoteProtocol.h"

namespace platform::mac::remote {

// Who asked and waits for a reply, by the names of their ports.
struct RemoteControl::Desk : std::enable_shared_from_this<Desk> {
  Handler handler;
  std::vector<std::string> waiting;

  // Whoever went away meanwhile gets nothing.
  static void tell(const std::string& name, SInt32 number, const std::string& content) {
    if (const auto port = remotePort(name)) sendMessage(port.get(), number, content);
  }

  void take(std::vector<std::string> words) {
    if (words.empty()) return;
    const std::string name = std::move(words.front());
    words.erase(words.begin());
    waiting.push_back(name);
    handler(words, [weakDesk = weak_from_this(), name](const RemoteReply& reply) {
      if (const auto desk = weakDesk.lock()) std::erase(desk->waiting, name);
      tell(name, reply.status, reply.output);
    });
  }

  static CFDataRef receive(CFMessagePortRef /*port*/, SInt32 /*number*/, CFDataRef data, void* context) {
    static_cast<Desk*>(context)->take(wordsOf(contentOf(data)));
    return nullptr;
  }
};

RemoteControl::~RemoteControl() {
  if (port_ == nullptr) return;
  CFMessagePortInvalidate(port_);
  CFRelease(port_);
}

RemoteControl::Claim RemoteControl::claim(Handler handler) {
  const std::string name = commandPortName();
  // Asked first, since the system writes a message of its own when a name is taken.
  if (remotePort(name)) return Claim::taken;
  desk_ = std::make_shared<Desk>();
  desk_->handler = std::move(handler);
  port_ = makePort(name, &Desk::receive, desk_.get()).release();
  if (port_ != nullptr) return Claim::first;
  if (remotePort(name)) return Claim::taken;
  std::cerr << sentence::noCommandPort << std::endl;
  return Claim::unavailable;
}

void RemoteControl::announceQuestion() {
  if (!desk_) return;
  for (const std::string& name : desk_->waiting) Desk::tell(name, questionNumber, {});
}

}  // namespace platform::mac::remote
