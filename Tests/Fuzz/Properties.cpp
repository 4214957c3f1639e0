// The properties of foreign windows, of any type, format and length, as the server returns them.

#include <cstring>
#include <memory>
#include <vector>

#include "Platform/Linux/Scene/ClientProperties.h"
#include "Platform/Linux/Scene/Identity.h"
#include "Platform/Linux/Xcb/Replies.h"
#include "Platform/Utf8.h"
#include "Tests/Fuzz/Fuzz.h"

namespace {

using namespace platform::linux;

// Takes the input apart from the front; gives zeros once it is used up.
class Input {
 public:
  Input(const std::uint8_t* bytes, std::size_t length) : rest_(fuzz::text(bytes, length)) {}

  std::uint8_t byte() {
    if (rest_.empty()) return 0;
    const auto value = static_cast<std::uint8_t>(rest_.front());
    rest_.remove_prefix(1);
    return value;
  }
  std::uint32_t number() { return byte() | static_cast<std::uint32_t>(byte()) << 8U; }
  std::string_view take(std::size_t length) {
    const auto taken = rest_.substr(0, length);
    rest_.remove_prefix(taken.size());
    return taken;
  }

 private:
  std::string_view rest_;
};

// In a block of memory of exactly its size, so that reading past the end is noticed. The length comes from the server
// and is true; everything else comes from the window.
xcb::Reply<xcb_get_property_reply_t> makeReply(Input& input) {
  constexpr std::uint8_t formats[]{0, 8, 16, 32};
  const std::uint8_t format = formats[input.byte() % 4];
  const std::size_t unit = format == 0 ? 1 : format / 8U;
  const auto data = input.take(input.number() % 4200);
  const std::size_t count = format == 0 ? 0 : data.size() / unit;
  auto* reply = static_cast<xcb_get_property_reply_t*>(std::calloc(1, sizeof(xcb_get_property_reply_t) + count * unit));
  reply->format = format;
  reply->type = input.number();
  reply->value_len = static_cast<std::uint32_t>(count);
  reply->bytes_after = input.number();
  std::memcpy(reply + 1, data.data(), count * unit);
  return xcb::Reply<xcb_get_property_reply_t>(reply);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
  static xcb_atom_t last = 0;
  static const scene::PropertyAtoms atoms([](std::string_view) { return ++last; });
  Input input(bytes, length);
  const unsigned present = input.byte();
  std::vector<xcb::Reply<xcb_get_property_reply_t>> owned;
  scene::PropertyReplies replies{};
  for (std::size_t i = 0; i < replies.size(); ++i) {
    if ((present >> i & 1U) == 0) continue;
    owned.push_back(makeReply(input));
    replies[i] = owned.back().get();
  }
  const auto client = scene::decodeProperties(atoms, replies);
  const std::vector<xcb::PixelRect> monitors{{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}};
  scene::WindowProperties window;
  window.instanceName = client.instanceName;
  window.className = client.className;
  window.types = client.types;
  window.state = client.state;
  window.hasFixedSize = client.hasFixedSize;
  window.isManaged = client.isManaged;
  window.frame = {0, 0, static_cast<int>(input.number()), static_cast<int>(input.number())};
  window.hasAlpha = (input.byte() & 1U) != 0;
  const auto owner = scene::ownerIdentifier(window);
  fuzz::expect(!owner || platform::isValidUtf8(*owner), "an owner's name is UTF-8");
  const auto layer = scene::windowLayer(window, monitors);
  fuzz::expect(layer >= scene::layers::below && layer < scene::layers::own,
               "a foreign window's layer is one of the known ones");
  fuzz::expect(layer < scene::layers::overlay || !scene::isScreenLocker(window, monitors),
               "no locker is taken for an overlay");
  return 0;
}
