// The ground of the tests that run on the simulated desktop and on the macOS adapter.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>

#include "Tests/Mac/Contract/ContractDesktop.h"

namespace contract {

struct Kind {
  const char* name;
  std::unique_ptr<Desktop> (*make)();

  friend void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }
};

inline const auto bothDesktops = testing::Values(Kind{"Simulated", makeSimulatedDesktop}, Kind{"Mac", makeFakedMac});

inline std::string nameOfDesktop(const testing::TestParamInfo<Kind>& parameter) { return parameter.param.name; }

class BothDesktops : public testing::TestWithParam<Kind> {
 protected:
  // There is only one at a time.
  void startAnew() {
    desktop.reset();
    desktop = GetParam().make();
    desktop->arrangeScreens({{{{0, 0}, {1440, 900}}, 69, 2}});
  }
  void SetUp() override { startAnew(); }

  std::unique_ptr<Desktop> desktop;
};

}  // namespace contract
