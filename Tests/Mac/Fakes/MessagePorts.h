// Threads: main thread only.
#pragma once

namespace fake {

// That can be reached by their names.
[[nodiscard]] int liveMessagePorts();

}  // namespace fake
