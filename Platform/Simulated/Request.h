// A question to the capture service that waits for its answer.
//
// Threads: asked and answered on the main thread; the completion runs, and is destroyed, on another one while the main
// thread waits.
// Contract: each request is answered at most once; one that is dropped unanswered destroys its completion.
#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Platform/Error.h"
#include "Platform/Simulated/Record.h"
#include "Platform/Simulated/RunLoop.h"

namespace platform::simulated {

template <class Value>
class Request {
 public:
  using Answer = std::expected<Value, Error>;
  using Completion = std::function<void(Answer)>;

  // `onAnswer` gets every answer before the completion does.
  Request(Completion completion, std::function<void(const Answer&)> onAnswer)
      : completion_(std::move(completion)), onAnswer_(std::move(onAnswer)) {
    if (!completion_) misuse("a request was made without a completion");
  }

  void answer(Answer answer) {
    if (!completion_) misuse("a request was answered twice");
    Completion completion = std::exchange(completion_, nullptr);
    onAnswer_(answer);
    runOnAnotherThread([&] {
      completion(std::move(answer));
      completion = nullptr;
    });
  }
  void fail(const std::string& description) { answer(std::unexpected(Error{description})); }
  void drop() { completion_ = nullptr; }

  [[nodiscard]] bool isPending() const { return static_cast<bool>(completion_); }

 private:
  Completion completion_;
  std::function<void(const Answer&)> onAnswer_;
};

// How one kind of request is answered.
struct Answering {
  bool isHeld = false;  // true: each waits until the test answers it; false: at the next turn of the main queue
  std::optional<std::string> failure;  // with this description instead of success
};

// Answers `request` on the next turn of the main queue, unless it has been answered or dropped by then.
template <class Value>
void answerLater(RunLoop& runLoop, const std::shared_ptr<Request<Value>>& request, const Answering& answering,
                 std::function<Value()> value) {
  runLoop.post([request, failure = answering.failure, value = std::move(value)] {
    if (!request->isPending()) return;
    if (failure) {
      request->fail(*failure);
    } else if constexpr (std::is_void_v<Value>) {
      request->answer({});
    } else {
      request->answer(value());
    }
  });
}

}  // namespace platform::simulated
