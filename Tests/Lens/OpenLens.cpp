#include "Tests/Lens/OpenLens.h"

#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace lens {

std::vector<std::string> throughLens(const std::string& view, std::vector<std::string> program) {
  std::vector<std::string> words{QUILLFADE_EXECUTABLE, "share", "--view", view, "--"};
  words.insert(words.end(), program.begin(), program.end());
  return words;
}

OpenLens::OpenLens(const std::string& realDisplay, const std::string& view)
    : process_(throughLens(view, {"sh", "-c", "echo \"$DISPLAY $XAUTHORITY\"; exec tail -f /dev/null"}),
               {{"DISPLAY", realDisplay}}) {
  if (!support::waitUntil([&] { return process_.output().ends_with('\n') || !process_.isRunning(); }) ||
      !process_.isRunning()) {
    throw std::runtime_error("The lens did not open: " + process_.output());
  }
  std::istringstream(process_.output()) >> display_ >> authority_;
}

std::unique_ptr<support::XClient> OpenLens::connect() const {
  ::setenv("XAUTHORITY", authority_.c_str(), 1);
  auto client = std::make_unique<support::XClient>(display_);
  ::unsetenv("XAUTHORITY");
  return client;
}

}  // namespace lens
