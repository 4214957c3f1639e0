// What a view draws, in words. Drawing outside of a view's `drawRect:` ends the process.
//
// Threads: main thread only.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace fake {

// What `draw` draws.
[[nodiscard]] std::vector<std::string> drawnBy(const std::function<void()>& draw);
void setFill(const std::string& color);
void setStroke(const std::string& color);

}  // namespace fake
