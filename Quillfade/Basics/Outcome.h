// What became of a command.
#pragma once

#include <expected>
#include <string>

namespace quillfade {

// Carried out, or a sentence that tells the user why not. A type of its own, because menus and keys ignore it: newer
// libraries warn when a plain std::expected is ignored.
struct Outcome : std::expected<void, std::string> {
  using expected::expected;
};

}  // namespace quillfade
