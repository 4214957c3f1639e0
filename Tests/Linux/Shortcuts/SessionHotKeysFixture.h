// The application's four keys, asked of the services on the tests' own bus.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "Platform/Linux/Shortcuts/SessionHotKeys.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Linux/Shortcuts/ShortcutServices.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"

namespace platform::linux::shortcuts {

class SessionHotKeysFixture : public qt::Test {
 protected:
  using Kind = HotKeyStanding::Kind;
  static constexpr std::uint32_t controlOptionCommand = 6400;

  void registerKeys() {
    keys_.emplace(*connection_);
    handler_ = keys_->installHandler(
        [](const HotKeyEvent* event, void* userData) -> std::int32_t {
          static_cast<SessionHotKeysFixture*>(userData)->pressed_.push_back(event->hotKeyID()->id);
          return 0;
        },
        this);
    add(1, 2, {"toggle", "Hide Annotations"});
    add(2, 35, {"peek", "Peek for 5 Seconds"});
  }
  void add(std::uint32_t id, std::uint32_t keyCode, const HotKeyPurpose& purpose) {
    keys_->describe({1, id}, purpose);
    const auto reference = keys_->registerHotKey(keyCode, controlOptionCommand, {1, id});
    ASSERT_TRUE(reference);
    references_.push_back(*reference);
  }

  [[nodiscard]] bool allAre(Kind kind) {
    return qt::runUntil([&] {
      return std::ranges::all_of(references_, [&](auto each) { return keys_->standing(each).kind == kind; });
    });
  }
  [[nodiscard]] bool hasPressed(const std::vector<std::uint32_t>& ids) {
    return qt::runUntil([&] { return pressed_ == ids; });
  }

  std::unique_ptr<xcb::Connection> connection_ = connectTo(qt::display());
  std::optional<SessionHotKeys> keys_;
  std::optional<HotKeyHandlerReference> handler_;
  std::vector<HotKeyReference> references_;
  std::vector<std::uint32_t> pressed_;
};

}  // namespace platform::linux::shortcuts
