#include "Platform/Linux/Lens/BusyPolling.h"

#include <algorithm>
#include <utility>

namespace platform::linux::lens {

BusyPolling::Duration BusyPolling::patience() const {
  if (passing_ == Passing::longRequest) return longestPause;
  const bool staysAwake = turns_ >= eventsOfSeries || passing_ == Passing::longReply;
  return staysAwake ? longestAnswer : Duration::zero();
}

void BusyPolling::noteTurn(int descriptor, Duration waited) {
  const int before = turns_;
  noteOther(waited);
  if (std::exchange(last_, descriptor) != descriptor) turns_ = std::min(before + 1, shortWaits_);
}

void BusyPolling::noteOther(Duration waited) {
  shortWaits_ = waited <= longestAnswer ? std::min(shortWaits_ + 1, eventsOfSeries) : 0;
  // The parts of one message count as one turn.
  const bool goesOn = std::exchange(passing_, Passing::shortMessages) != Passing::shortMessages;
  turns_ = goesOn ? std::min(turns_, shortWaits_) : 0;
}

}  // namespace platform::linux::lens
