// Lets the programs behind a lens connect to it: a fresh cookie, in a file for them alone.
//
// Threads: any. Ownership: owns the file and its directory, which only this user can read. Failure: sentences.
#pragma once

#include <expected>
#include <string>

#include "Platform/Error.h"
#include "Platform/Linux/Protocol/Setup.h"

namespace platform::linux::lens {

class PrivateAuthority {
 public:
  static std::expected<PrivateAuthority, Error> make(int displayNumber);
  ~PrivateAuthority();
  PrivateAuthority(PrivateAuthority&& other) noexcept;
  PrivateAuthority& operator=(PrivateAuthority&&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] bool admits(const protocol::Credential& credential) const;

 private:
  PrivateAuthority() = default;

  std::string directory_;
  std::string path_;
  protocol::Credential credential_;
};

}  // namespace platform::linux::lens
