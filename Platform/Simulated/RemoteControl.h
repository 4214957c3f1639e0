// Commands from outside, as a test sends them.
//
// Threads: main thread only.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/RemoteControl.h"
#include "Platform/Simulated/Record.h"

namespace platform::simulated {

class RemoteControl final : public platform::RemoteControl {
 public:
  explicit RemoteControl(Record& record) : record_(record) {}

  Claim claim(Handler handler) override;
  void announceQuestion() override { record_.call("remote control: announce a question"); }

  // Hands the words to the handler and keeps its reply. Call only after a claim was granted.
  void send(const std::vector<std::string>& arguments);
  // The replies so far, in the order they came.
  [[nodiscard]] const std::vector<RemoteReply>& replies() const { return replies_; }

  Claim nextClaim = Claim::first;

 private:
  Record& record_;
  Handler handler_;
  std::vector<RemoteReply> replies_;
};

}  // namespace platform::simulated
