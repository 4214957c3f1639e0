// A lens that stays open for a test: the real program, with one behind it that only waits.
//
// Ownership: the lens ends with the object. Failure: a lens that does not open throws.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/XClient.h"

namespace lens {

// The private server's screen, and a mirror on it.
inline constexpr support::PixelRect screen{0, 0, 1280, 800};
inline constexpr support::PixelRect mirror{200, 150, 400, 300};

// The command line of a program that runs through a lens.
[[nodiscard]] std::vector<std::string> throughLens(const std::string& view, std::vector<std::string> program);

class OpenLens {
 public:
  explicit OpenLens(const std::string& realDisplay, const std::string& view = "unmirrored");

  [[nodiscard]] support::ChildProcess& process() { return process_; }
  // As the program behind the lens sees them.
  [[nodiscard]] const std::string& display() const { return display_; }
  [[nodiscard]] const std::string& authority() const { return authority_; }
  [[nodiscard]] int number() const { return std::stoi(display_.substr(1)); }
  // Connects this test as a program behind the lens.
  [[nodiscard]] std::unique_ptr<support::XClient> connect() const;

 private:
  support::ChildProcess process_;
  std::string display_;
  std::string authority_;
};

}  // namespace lens
