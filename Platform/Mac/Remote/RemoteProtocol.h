// What the two ends of the remote control have agreed on: the names of their ports, words as bytes, numbers of
// messages, and what is said when it fails. Portable.
//
// A request's content is the name of the asking process's own port and the words of the command. What arrives on that
// port is numbered: `questionNumber` says that the user is being asked something, any other number is the exit status
// and the content the output.
// Threads: any.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace platform::mac::remote {

inline constexpr std::int32_t requestNumber = 0;
inline constexpr std::int32_t questionNumber = -1;

[[nodiscard]] std::string commandPortName();
[[nodiscard]] std::string replyPortName(int processNumber);

// Words hold no null character, as the words of a command line do not.
[[nodiscard]] std::string bytesOf(const std::vector<std::string>& words);
[[nodiscard]] std::vector<std::string> wordsOf(std::string_view bytes);

namespace sentence {
extern const char* const notRunning;
extern const char* const noAnswer;
extern const char* const noReplyPort;
extern const char* const noCommandPort;
}  // namespace sentence

}  // namespace platform::mac::remote
