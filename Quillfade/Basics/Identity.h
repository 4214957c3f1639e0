// Who this application is.
#pragma once

#include <string_view>

namespace quillfade {

inline constexpr std::string_view applicationName = "Quillfade";
inline constexpr std::string_view applicationVersion = "1.1";
inline constexpr std::string_view applicationIdentifier = "org.quillfade.Quillfade";

}  // namespace quillfade
