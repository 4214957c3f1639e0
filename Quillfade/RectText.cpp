#include "Quillfade/RectText.h"

#include <cmath>
#include <locale>
#include <optional>
#include <sstream>

#include "Quillfade/NumberText.h"

namespace quillfade {
namespace {

// Reads the text from left to right; what is wanted of it ends with the first mismatch.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  bool punctuation(char wanted) {
    skipBlanks();
    if (rest_.empty() || rest_.front() != wanted) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool number(double& value) {
    skipBlanks();
    const auto length = std::min(rest_.find_first_not_of("+-.0123456789eE"), rest_.size());
    // A stream with the classic locale reads the same on every desktop, whatever its decimal sign.
    std::istringstream stream{std::string{rest_.substr(0, length)}};
    stream.imbue(std::locale::classic());
    if (length == 0 || !(stream >> value) || stream.peek() != std::istringstream::traits_type::eof() ||
        !std::isfinite(value)) {
      return false;
    }
    rest_.remove_prefix(length);
    return true;
  }

  bool pair(double& first, double& second) {
    return punctuation('{') && number(first) && punctuation(',') && number(second) && punctuation('}');
  }

  bool end() {
    skipBlanks();
    return rest_.empty();
  }

 private:
  void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size())); }

  std::string_view rest_;
};

}  // namespace

std::string rectText(const platform::Rect& rect) {
  return "{{" + numberText(rect.origin.x) + ", " + numberText(rect.origin.y) + "}, {" + numberText(rect.size.width) +
         ", " + numberText(rect.size.height) + "}}";
}

platform::Rect rectFromText(std::string_view text) {
  platform::Rect rect;
  Reader reader(text);
  const bool complete = reader.punctuation('{') && reader.pair(rect.origin.x, rect.origin.y) &&
                        reader.punctuation(',') && reader.pair(rect.size.width, rect.size.height) &&
                        reader.punctuation('}') && reader.end();
  return complete ? rect : platform::Rect{};
}

}  // namespace quillfade
