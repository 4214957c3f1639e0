#include "Platform/Mac/Session/LoginItem.h"

#import <ServiceManagement/ServiceManagement.h>

#include "Platform/Mac/Foundation/Bridge.h"

namespace platform::mac::session {
namespace {

static_assert(static_cast<NSInteger>(LoginItemStatus::notRegistered) == SMAppServiceStatusNotRegistered);
static_assert(static_cast<NSInteger>(LoginItemStatus::enabled) == SMAppServiceStatusEnabled);
static_assert(static_cast<NSInteger>(LoginItemStatus::requiresApproval) == SMAppServiceStatusRequiresApproval);
static_assert(static_cast<NSInteger>(LoginItemStatus::notFound) == SMAppServiceStatusNotFound);

}  // namespace

LoginItemStatus LoginItem::status() const { return static_cast<LoginItemStatus>([SMAppService mainAppService].status); }

std::expected<void, Error> LoginItem::registerItem() {
  NSError* error = nil;
  if ([[SMAppService mainAppService] registerAndReturnError:&error]) return {};
  return std::unexpected(foundation::fromNSError(error));
}

std::expected<void, Error> LoginItem::unregisterItem() {
  NSError* error = nil;
  if ([[SMAppService mainAppService] unregisterAndReturnError:&error]) return {};
  return std::unexpected(foundation::fromNSError(error));
}

}  // namespace platform::mac::session
