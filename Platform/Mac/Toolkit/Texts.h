// The texts stay English on macOS: no translation is bundled yet.
//
// Threads: main thread only.
#pragma once

#include "Platform/Texts.h"

namespace platform::mac::toolkit {

class Texts final : public platform::Texts {
 public:
  [[nodiscard]] std::string translated(std::string_view english) const override { return std::string{english}; }
};

}  // namespace platform::mac::toolkit
