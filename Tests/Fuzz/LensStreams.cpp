// What programs behind a lens send to the X server, what it sends to them, and the first words of both. The input
// chooses byte order and piece size, as Tests/Lens/StreamPromises.h says.

#include <span>

#include "Tests/Fuzz/Fuzz.h"
#include "Tests/Lens/StreamPromises.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
  fuzz::expect(lens::keepsPromises(std::as_bytes(std::span(bytes, length))),
               "the same comes out wherever the bytes are cut");
  return 0;
}
