// The programs that are compared: ours, other ways to show a live copy of part of the screen, and a compositor.
//
// Each shows a copy of `area`. Ours lies over the area itself; the others show theirs in a window beyond it, at
// `beside`, so that they do not film themselves. Each program ends with its object.
// Failure: a program that is missing or shows nothing throws.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Tests/Support/QuillfadeProgram.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace bench {

using support::PixelRect;

struct Place {
  PixelRect screen;  // the whole screen
  PixelRect area;
  PixelRect beside;
};

inline constexpr pid_t noProcess = 0;

class Subject {
 public:
  virtual ~Subject() = default;
  // May be absent.
  [[nodiscard]] virtual pid_t process() const = 0;
};

inline const std::string ours = "quillfade";
// No program: all windows are drawn off screen, and a window lies over the area. What ours costs beyond that is the
// copy.
inline const std::string redirectionOnly = "redirection-only";

// Starts one of "redirection-only", "quillfade", "ffplay", "gstreamer-damage", "gstreamer-full", "xzoom", "picom" and
// "bare-mirror". Ours may start with the cover off.
[[nodiscard]] std::unique_ptr<Subject> startSubject(const std::string& name, const std::string& display,
                                                    const Place& place, bool isOn = true);

// Name, version and command line of each peer, for the report.
struct PeerDescription {
  std::string name;
  std::string version;
  std::string commandLine;
};
[[nodiscard]] std::vector<PeerDescription> describePeers();

}  // namespace bench
