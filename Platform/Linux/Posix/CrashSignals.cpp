#include "Platform/Linux/Posix/CrashSignals.h"

#include <unistd.h>

#include <string_view>

namespace platform::linux::posix {
namespace {

// SIGABRT is missing: whatever aborts has already said why.
constexpr std::array signals{SIGSEGV, SIGBUS, SIGFPE, SIGILL};

// Does only what is safe in a signal handler. The signal raised again stays pending until this returns, then ends the
// process.
void handle(int signal) {
  constexpr std::string_view sentence =
      "quillfade: Quillfade has crashed (signal ..); nothing of it remains on the screen. Please report this.\n";
  std::array<char, sentence.size()> text{};
  sentence.copy(text.data(), text.size());
  const auto number = sentence.find("..");
  text.at(number) = static_cast<char>('0' + signal / 10);
  text.at(number + 1) = static_cast<char>('0' + signal % 10);
  (void)!::write(STDERR_FILENO, text.data(), text.size());
  ::raise(signal);
}

}  // namespace

CrashSignals::CrashSignals() {
  stack_t stack{};
  stack.ss_sp = stack_.data();
  stack.ss_size = stack_.size();
  ::sigaltstack(&stack, nullptr);
  struct sigaction action{};
  action.sa_handler = handle;
  action.sa_flags = static_cast<int>(SA_ONSTACK | SA_RESETHAND);
  for (const int signal : signals) ::sigaction(signal, &action, nullptr);
}

CrashSignals::~CrashSignals() {
  for (const int signal : signals) std::signal(signal, SIG_DFL);
  stack_t none{};
  none.ss_flags = SS_DISABLE;
  ::sigaltstack(&none, nullptr);
}

}  // namespace platform::linux::posix
