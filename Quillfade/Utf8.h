// Whether bytes are well-formed UTF-8: no overlong forms, no surrogates, nothing beyond U+10FFFF.
#pragma once

#include <string_view>

namespace quillfade {

[[nodiscard]] bool isValidUtf8(std::string_view bytes);

}  // namespace quillfade
