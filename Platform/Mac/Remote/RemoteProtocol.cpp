#include "Platform/Mac/Remote/RemoteProtocol.h"

namespace platform::mac::remote {
namespace {

constexpr std::string_view identifier = "org.quillfade.Quillfade";

}  // namespace

std::string commandPortName() { return std::string{identifier} + ".commands"; }

std::string replyPortName(int processNumber) {
  return std::string{identifier} + ".reply." + std::to_string(processNumber);
}

std::string bytesOf(const std::vector<std::string>& words) {
  std::string bytes;
  for (const std::string& word : words) bytes += word + '\0';
  return bytes;
}

std::vector<std::string> wordsOf(std::string_view bytes) {
  std::vector<std::string> words;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\0');
    words.emplace_back(bytes.substr(0, end));
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
  }
  return words;
}

namespace sentence {
const char* const notRunning = "Quillfade is not running.";
const char* const noAnswer = "The running Quillfade did not answer.";
const char* const noReplyPort = "A reply of the running Quillfade could not be received.";
const char* const noCommandPort =
    "quillfade: No port can be opened: commands like \"quillfade toggle\" will not reach this instance.";
}  // namespace sentence

}  // namespace platform::mac::remote
