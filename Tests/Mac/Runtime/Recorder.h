// Every message that the adapter sends and every function of the system that it calls, in order, and the rule which of
// them belong to the main thread.
//
// Threads: any. Failure: what breaks the rule ends the process and says so.
#pragma once

#include <string>
#include <vector>

namespace fake {

// Ends the process: the adapter or a test did what no system allows, or what the fakes do not know.
[[noreturn]] void misuse(const std::string& what);

[[nodiscard]] bool isMainThread();
void expectMainThread(const char* call);

// A line of the record, with what a test wants to see of the arguments.
void record(std::string line);
// What was recorded since the last call.
[[nodiscard]] std::vector<std::string> takeRecord();

}  // namespace fake

// In a function or method of a fake that belongs to the main thread.
#define EXPECT_MAIN_THREAD() ::fake::expectMainThread(__PRETTY_FUNCTION__)
