#include "Platform/Linux/Lens/PrivateAuthority.h"

#include <X11/Xauth.h>
#include <fcntl.h>
#include <sys/random.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

#include "Platform/Linux/Posix/HostName.h"
#include "Platform/Linux/Posix/SystemError.h"
#include "Platform/Linux/Posix/UserDirectories.h"

namespace platform::linux::lens {

namespace {

constexpr std::size_t cookieLength = 16;

std::string runtimeDirectory() {
  const auto directory = posix::environmentVariable("XDG_RUNTIME_DIR");
  return directory && directory->starts_with('/') && ::access(directory->c_str(), W_OK) == 0 ? *directory : "/tmp";
}

// Writes an entry for this machine's name, which libraries look up first, and one for whatever its name becomes.
bool writeEntries(FILE* file, int displayNumber, protocol::Credential& credential) {
  std::string name = posix::hostName();
  std::string number = std::to_string(displayNumber);
  Xauth entry{};
  entry.number = number.data();
  entry.number_length = static_cast<unsigned short>(number.size());
  entry.name = credential.name.data();
  entry.name_length = static_cast<unsigned short>(credential.name.size());
  entry.data = credential.data.data();
  entry.data_length = static_cast<unsigned short>(credential.data.size());
  entry.family = FamilyLocal;
  entry.address = name.data();
  entry.address_length = static_cast<unsigned short>(name.size());
  const bool isLocalWritten = XauWriteAuth(file, &entry) != 0;
  entry.family = FamilyWild;
  entry.address_length = 0;
  return isLocalWritten && XauWriteAuth(file, &entry) != 0 && std::fflush(file) == 0;
}

struct CloseFile {
  void operator()(FILE* file) const { std::fclose(file); }
};

}  // namespace

std::expected<PrivateAuthority, Error> PrivateAuthority::make(int displayNumber) {
  PrivateAuthority authority;
  std::string directory = runtimeDirectory() + "/quillfade-share-XXXXXX";
  if (::mkdtemp(directory.data()) == nullptr) {
    return std::unexpected(posix::systemError("Cannot make the directory", directory, errno));
  }
  authority.directory_ = directory;
  authority.path_ = directory + "/Xauthority";
  authority.credential_ = {"MIT-MAGIC-COOKIE-1", std::string(cookieLength, '\0')};
  if (::getrandom(authority.credential_.data.data(), cookieLength, 0) != static_cast<ssize_t>(cookieLength)) {
    return std::unexpected(Error{"The system provides no random numbers."});
  }
  const int descriptor = ::open(authority.path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  const std::unique_ptr<FILE, CloseFile> file(descriptor < 0 ? nullptr : ::fdopen(descriptor, "wb"));
  if (!file || !writeEntries(file.get(), displayNumber, authority.credential_)) {
    return std::unexpected(posix::systemError("Cannot write", authority.path_, errno));
  }
  return authority;
}

PrivateAuthority::PrivateAuthority(PrivateAuthority&& other) noexcept
    : directory_(std::exchange(other.directory_, {})),
      path_(std::exchange(other.path_, {})),
      credential_(std::move(other.credential_)) {}

PrivateAuthority::~PrivateAuthority() {
  if (directory_.empty()) return;
  ::unlink(path_.c_str());
  ::rmdir(directory_.c_str());
}

bool PrivateAuthority::admits(const protocol::Credential& credential) const {
  return credential.name == credential_.name && protocol::isSameSecret(credential.data, credential_.data);
}

}  // namespace platform::linux::lens
