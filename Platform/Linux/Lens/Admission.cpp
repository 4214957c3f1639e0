#include "Platform/Linux/Lens/Admission.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>

namespace platform::linux::lens {

namespace {

constexpr std::string_view refusal = "Authorization required, but no valid cookie was given.";

}  // namespace

Admission::Verdict Admission::advance() {
  for (;;) {
    const auto request = protocol::parseSetupRequest(received_);
    if (!request) {
      complaint_ = request.error().localizedDescription;
      return Verdict::refused;
    }
    if (*request) {
      request_ = **request;
      if (authority_.admits(request_.credential)) return Verdict::admitted;
      const auto answer = protocol::setupRefusal(request_.order, refusal);
      (void)::send(socket_.get(), answer.data(), answer.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
      return Verdict::refused;
    }
    // Byte by byte would do. Reading only as much as certainly belongs to the setup saves calls.
    std::array<std::byte, 4> next{};
    const std::size_t wanted = 4 - received_.size() % 4;
    const ssize_t count = ::recv(socket_.get(), next.data(), wanted, MSG_DONTWAIT);
    if (count < 0) return errno == EAGAIN || errno == EINTR ? Verdict::undecided : Verdict::gone;
    if (count == 0) return Verdict::gone;
    received_.insert(received_.end(), next.begin(), next.begin() + count);
  }
}

}  // namespace platform::linux::lens
