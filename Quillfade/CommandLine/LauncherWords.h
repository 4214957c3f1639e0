// Words that launchers, session managers and toolkits add after a program's name.
//
// They are not commands; whoever they are for reads them from the process's own arguments. Pure.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillfade {

// How many words at the front are of this kind, their values included.
[[nodiscard]] std::size_t launcherWords(const std::vector<std::string>& words);

}  // namespace quillfade
