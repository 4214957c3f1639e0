// The application's own login item.
//
// Threads: main thread only.
#pragma once

#include "Platform/LoginItem.h"

namespace platform::mac::session {

class LoginItem final : public platform::LoginItem {
 public:
  [[nodiscard]] LoginItemStatus status() const override;
  std::expected<void, Error> registerItem() override;
  std::expected<void, Error> unregisterItem() override;
};

}  // namespace platform::mac::session
