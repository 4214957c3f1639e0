// A process with whatever surroundings a test gives it.
//
// Threads: any; tests change it only while no other thread asks.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "Platform/Process.h"

namespace platform::simulated {

class Process final : public platform::Process {
 public:
  [[nodiscard]] std::optional<std::string> environmentVariable(const std::string& name) const override {
    const auto place = environment.find(name);
    return place == environment.end() ? std::nullopt : std::optional(place->second);
  }
  [[nodiscard]] std::optional<std::string> bundleIdentifier() const override { return identifier; }
  [[nodiscard]] std::string homeDirectory() const override { return home; }

  std::map<std::string, std::string> environment;
  std::optional<std::string> identifier = "org.example.presenter";
  std::string home = "/home/presenter";
};

}  // namespace platform::simulated
