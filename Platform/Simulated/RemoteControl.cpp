#include "Platform/Simulated/RemoteControl.h"

#include <memory>

namespace platform::simulated {

RemoteControl::Claim RemoteControl::claim(Handler handler) {
  record_.call("claim the remote control");
  if (nextClaim == Claim::first) handler_ = std::move(handler);
  return nextClaim;
}

void RemoteControl::send(const std::vector<std::string>& arguments) {
  if (!handler_) misuse("a command was sent to an instance that has not claimed the remote control");
  auto isAnswered = std::make_shared<bool>(false);
  handler_(arguments, [this, isAnswered](RemoteReply reply) {
    if (std::exchange(*isAnswered, true)) misuse("a command was answered twice");
    replies_.push_back(std::move(reply));
  });
}

}  // namespace platform::simulated
