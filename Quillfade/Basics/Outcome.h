// What became of a command.
#pragma once

#include <expected>
#include <string>

namespace quillfade {

// Carried out, or a sentence for the user that says why not. A type of its own, since a menu and a key have nobody to
// tell: newer libraries warn where a plain std::expected is not looked at.
struct Outcome : std::expected<void, std::string> {
  using expected::expected;
};

}  // namespace quillfade
