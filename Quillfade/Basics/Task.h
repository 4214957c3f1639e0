// Asynchronous steps as coroutines, all on the main thread.
//
// A `Task` starts at once and has no owner: its frame lives until its last step, or until nothing is left to resume it.
// It suspends only in `co_await onMainQueue<Result>(…)`, and every resumption is posted to the main queue. So the steps
// run in the order they are written, and no state needs a lock.
#pragma once

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <variant>

#include "Platform/RunLoop.h"

namespace quillfade {

struct Task {
  // The language gives these names.
  // NOLINTBEGIN(readability-identifier-naming)
  struct promise_type {
    Task get_return_object() { return {}; }
    std::suspend_never initial_suspend() noexcept { return {}; }
    std::suspend_never final_suspend() noexcept { return {}; }
    void return_void() {}
    [[noreturn]] void unhandled_exception() { std::terminate(); }
  };
  // NOLINTEND(readability-identifier-naming)
};

// Waits for an operation that reports its end through a callback, on any thread.
template <class Result>
class MainQueueAwaiter {
 public:
  using Callback = std::function<void(Result)>;
  using Operation = std::function<void(Callback)>;

  MainQueueAwaiter(platform::RunLoop& loop, Operation operation) : loop_(loop), operation_(std::move(operation)) {}

  // NOLINTBEGIN(readability-identifier-naming)
  [[nodiscard]] bool await_ready() const noexcept { return false; }

  void await_suspend(std::coroutine_handle<> handle) {
    auto suspension = std::make_shared<Suspension>(handle, result_);
    operation_([suspension, loop = &loop_](Result result) {
      loop->post([suspension, result = std::move(result)]() mutable { suspension->resume(std::move(result)); });
    });
  }

  Result await_resume() { return std::move(*result_); }
  // NOLINTEND(readability-identifier-naming)

 private:
  // Owns the suspended coroutine: when the last callback is destroyed without having been called, so is the coroutine.
  class Suspension {
   public:
    Suspension(std::coroutine_handle<> handle, std::optional<Result>& result) : handle_(handle), result_(result) {}
    Suspension(const Suspension&) = delete;
    Suspension& operator=(const Suspension&) = delete;
    ~Suspension() {
      if (handle_) handle_.destroy();
    }

    void resume(Result result) {
      result_.emplace(std::move(result));
      std::exchange(handle_, nullptr).resume();
    }

   private:
    std::coroutine_handle<> handle_;
    std::optional<Result>& result_;  // in the coroutine's own frame
  };

  platform::RunLoop& loop_;
  Operation operation_;
  std::optional<Result> result_;
};

template <class Result>
[[nodiscard]] MainQueueAwaiter<Result> onMainQueue(platform::RunLoop& loop,
                                                   typename MainQueueAwaiter<Result>::Operation operation) {
  return {loop, std::move(operation)};
}

// Resumes on a later turn of the main queue.
[[nodiscard]] inline MainQueueAwaiter<std::monostate> nextTurn(platform::RunLoop& loop) {
  return {loop, [](const std::function<void(std::monostate)>& proceed) { proceed({}); }};
}

}  // namespace quillfade
