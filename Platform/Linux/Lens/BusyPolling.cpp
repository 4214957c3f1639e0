#include "Platform/Linux/Lens/BusyPolling.h"

#include <algorithm>
#include <utility>

namespace platform::x11::lens {

void BusyPolling::noteTurn(int descriptor, Duration waited) {
  const bool isAlternate = std::exchange(last_, descriptor) != descriptor;
  turns_ = isAlternate && waited <= longestAnswer ? std::min(turns_ + 1, turnsOfDialogue) : 0;
}

}  // namespace platform::x11::lens
