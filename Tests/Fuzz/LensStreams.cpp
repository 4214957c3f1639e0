// The streams between programs behind a lens and the X server, their setup included. The input chooses the byte order
// and the size of the pieces, as Tests/Lens/StreamPromises.h explains.

#include <span>

#include "Tests/Fuzz/Fuzz.h"
#include "Tests/Lens/StreamPromises.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
  fuzz::expect(lens::keepsPromises(std::as_bytes(std::span(bytes, length))),
               "the same comes out wherever the bytes are cut");
  return 0;
}
