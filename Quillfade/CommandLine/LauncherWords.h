// Words that launchers, session managers and toolkits put behind a program's name.
//
// They make no command; whom they concern takes them from the process's own arguments. Pure.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillfade {

// How many words at the front are of this kind, with the values that belong to them.
[[nodiscard]] std::size_t launcherWords(const std::vector<std::string>& words);

}  // namespace quillfade
