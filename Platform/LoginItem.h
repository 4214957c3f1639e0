// Starting the application when the user logs in.
//
// Threads: main thread only.
#pragma once

#include <expected>

#include "Platform/Error.h"

namespace platform {

enum class LoginItemStatus : int { notRegistered = 0, enabled = 1, requiresApproval = 2, notFound = 3 };

class LoginItem {
 public:
  virtual ~LoginItem() = default;
  // Read afresh on every call.
  [[nodiscard]] virtual LoginItemStatus status() const = 0;
  virtual std::expected<void, Error> registerItem() = 0;
  virtual std::expected<void, Error> unregisterItem() = 0;
};

}  // namespace platform
