// Any words from a command line or the bus, one per line, give a command or a one-line sentence.

#include <string>
#include <vector>

#include "Quillfade/CommandLine/CommandLine.h"
#include "Tests/Fuzz/Fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
  std::vector<std::string> words;
  auto rest = fuzz::text(bytes, length);
  while (!rest.empty()) {
    words.emplace_back(rest.substr(0, rest.find('\n')));
    rest.remove_prefix(std::min(rest.size(), words.back().size() + 1));
  }
  const auto command = quillfade::parseCommand(words);
  if (!command) {
    fuzz::expect(command.error().ends_with('.'), "an error is a sentence");
    for (const char character : command.error())
      fuzz::expect(static_cast<unsigned char>(character) >= 0x20 && character != 0x7F, "an error is one line of text");
  } else if (const auto* peek = std::get_if<quillfade::command::Peek>(&*command)) {
    fuzz::expect(peek->seconds > 0 && peek->seconds <= quillfade::longestPeek, "a peek has an end");
  }
  return 0;
}
