// The stored rectangle: whatever is read is finite, and its own text reads back as the same.

#include <cmath>

#include "Quillfade/Basics/RectText.h"
#include "Tests/Fuzz/Fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
  const auto rect = quillfade::rectFromText(fuzz::text(bytes, length));
  for (const double number : {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height})
    fuzz::expect(std::isfinite(number), "every number is finite");
  fuzz::expect(quillfade::rectFromText(quillfade::rectText(rect)) == rect, "the text of a rectangle reads as it");
  return 0;
}
