// What became of a command.
#pragma once

#include <expected>
#include <string>

namespace quillfade {

// Carried out, or a sentence for the user that says why not.
using Outcome = std::expected<void, std::string>;

}  // namespace quillfade
