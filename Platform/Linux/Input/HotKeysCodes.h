// Key positions: from the virtual key codes of the bindings to the key codes of an X server.
//
// Both number physical positions, whatever is printed on the keys and whatever the layout makes of them, so the table
// holds for every keyboard. The X server's codes are those of the kernel's input devices plus eight.
// Threads: pure function.
#pragma once

#include <cstdint>
#include <optional>

namespace platform::linux::input {

// Absent for a position that no ordinary keyboard has.
[[nodiscard]] std::optional<std::uint8_t> keyCodeForVirtualKey(std::uint32_t virtualKey);

}  // namespace platform::linux::input
