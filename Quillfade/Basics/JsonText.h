// Text as a JSON string.
#pragma once

#include <string>
#include <string_view>

namespace quillfade {

// With its quotes. `text` is UTF-8.
[[nodiscard]] std::string jsonText(std::string_view text);

}  // namespace quillfade
