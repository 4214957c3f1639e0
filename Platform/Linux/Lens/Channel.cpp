#include "Platform/Linux/Lens/Channel.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace platform::linux::lens {

namespace {

constexpr std::size_t bufferSize = std::size_t{128} * 1024;
constexpr std::size_t leastRoom = std::size_t{32} * 1024;
constexpr std::size_t pipeSize = std::size_t{256} * 1024;
constexpr std::size_t mostDescriptors = 253;  // the most that the system transfers at once

using Control = std::array<std::byte, CMSG_SPACE(sizeof(int) * mostDescriptors)>;

Channel::Outcome failure() {
  return errno == EAGAIN || errno == EWOULDBLOCK ? Channel::Outcome::blocked : Channel::Outcome::closed;
}

}  // namespace

void Channel::makeRoom() {
  if (buffer_.empty()) buffer_.resize(bufferSize);
  if (begin_ == end_) begin_ = released_ = end_ = 0;
  if (buffer_.size() - end_ >= leastRoom || begin_ == 0) return;
  std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_), buffer_.begin() + static_cast<std::ptrdiff_t>(end_),
            buffer_.begin());
  released_ -= begin_;
  end_ -= begin_;
  begin_ = 0;
}

Channel::Outcome Channel::receive(std::uint64_t most) {
  makeRoom();
  iovec part{buffer_.data() + end_, static_cast<std::size_t>(std::min<std::uint64_t>(most, buffer_.size() - end_))};
  if (part.iov_len == 0) return Outcome::blocked;
  alignas(cmsghdr) Control control;
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  ssize_t received = 0;
  do {
    received = ::recvmsg(from_, &message, MSG_CMSG_CLOEXEC | MSG_DONTWAIT);
  } while (received < 0 && errno == EINTR);
  if (received < 0) return failure();
  keepDescriptors(message);
  if (received == 0) return Outcome::closed;
  end_ += static_cast<std::size_t>(received);
  mayHaveLeft_ = static_cast<std::size_t>(received) == part.iov_len;
  return Outcome::done;
}

void Channel::keepDescriptors(const msghdr& message) {
  for (cmsghdr* part = CMSG_FIRSTHDR(&message); part != nullptr;
       part = CMSG_NXTHDR(const_cast<msghdr*>(&message), part)) {
    if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_RIGHTS) continue;
    Descriptors arrived{.position = position_ + (end_ - begin_)};
    const std::size_t count = (part->cmsg_len - CMSG_LEN(0)) / sizeof(int);
    for (std::size_t i = 0; i < count; ++i) {
      int descriptor = -1;
      std::memcpy(&descriptor, CMSG_DATA(part) + i * sizeof(int), sizeof descriptor);
      arrived.descriptors.emplace_back(descriptor);
    }
    descriptors_.push_back(std::move(arrived));
  }
}

Channel::Outcome Channel::send() {
  if (const Outcome piped = sendPiped(); piped != Outcome::done) return piped;
  while (begin_ < released_) {
    if (const Outcome sent = sendSome(); sent != Outcome::done) return sent;
  }
  return Outcome::done;
}

// Sends bytes up to the next descriptors, which go with the byte that follows.
Channel::Outcome Channel::sendSome() {
  std::size_t length = released_ - begin_;
  alignas(cmsghdr) Control control;
  msghdr message{};
  const bool carries = !descriptors_.empty() && descriptors_.front().position <= position_;
  if (carries) {
    const std::vector<posix::FileDescriptor>& travelling = descriptors_.front().descriptors;
    message.msg_control = control.data();
    message.msg_controllen = CMSG_SPACE(sizeof(int) * travelling.size());
    cmsghdr* part = CMSG_FIRSTHDR(&message);
    part->cmsg_level = SOL_SOCKET;
    part->cmsg_type = SCM_RIGHTS;
    part->cmsg_len = CMSG_LEN(sizeof(int) * travelling.size());
    for (std::size_t i = 0; i < travelling.size(); ++i) {
      const int descriptor = travelling[i].get();
      std::memcpy(CMSG_DATA(part) + i * sizeof(int), &descriptor, sizeof descriptor);
    }
  }
  const std::size_t next = carries ? 1 : 0;
  if (next < descriptors_.size()) {
    length = static_cast<std::size_t>(std::min<std::uint64_t>(length, descriptors_[next].position - position_));
    // Descriptors that came with the same byte cannot be told apart.
    length = std::max<std::size_t>(length, 1);
  }
  iovec part{buffer_.data() + begin_, length};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  ssize_t sent = 0;
  do {
    sent = ::sendmsg(to_, &message, MSG_DONTWAIT | MSG_NOSIGNAL);
  } while (sent < 0 && errno == EINTR);
  if (sent < 0) return failure();
  if (carries) descriptors_.pop_front();
  begin_ += static_cast<std::size_t>(sent);
  position_ += static_cast<std::size_t>(sent);
  return Outcome::done;
}

Channel::Outcome Channel::move(std::uint64_t count, std::uint64_t& moved) {
  moved = 0;
  if (!pipe_[0].isOpen()) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return Outcome::closed;
    pipe_ = {posix::FileDescriptor(ends[0]), posix::FileDescriptor(ends[1])};
    // Smaller if the user has many pipes already; it works all the same.
    ::fcntl(pipe_[1].get(), F_SETPIPE_SZ, static_cast<int>(pipeSize));
  }
  const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(count, pipeSize));
  const ssize_t taken = ::splice(from_, nullptr, pipe_[1].get(), nullptr, wanted, SPLICE_F_MOVE | SPLICE_F_NONBLOCK);
  if (taken < 0) return errno == EINTR ? Outcome::done : failure();
  if (taken == 0) return Outcome::closed;
  moved = static_cast<std::uint64_t>(taken);
  inPipe_ = static_cast<std::size_t>(taken);
  position_ += moved;
  mayHaveLeft_ = moved == wanted;
  return sendPiped();
}

Channel::Outcome Channel::sendPiped() {
  while (inPipe_ > 0) {
    const ssize_t sent = ::splice(pipe_[0].get(), nullptr, to_, nullptr, inPipe_, SPLICE_F_MOVE | SPLICE_F_NONBLOCK);
    if (sent < 0 && errno == EINTR) continue;
    if (sent <= 0) return failure();
    inPipe_ -= static_cast<std::size_t>(sent);
  }
  return Outcome::done;
}

void Channel::drop(std::size_t count) {
  const std::uint64_t cut = position_ + (released_ - begin_);
  for (Descriptors& each : descriptors_) {
    if (each.position > cut) each.position -= std::min<std::uint64_t>(count, each.position - cut);
  }
  const auto first = buffer_.begin() + static_cast<std::ptrdiff_t>(released_);
  std::copy(first + static_cast<std::ptrdiff_t>(count), buffer_.begin() + static_cast<std::ptrdiff_t>(end_), first);
  end_ -= count;
}

void Channel::insert(std::span<const std::byte> bytes) {
  makeRoom();
  const std::uint64_t place = position_ + (released_ - begin_);
  for (Descriptors& each : descriptors_) {
    if (each.position >= place) each.position += bytes.size();
  }
  if (buffer_.size() - end_ < bytes.size()) buffer_.resize(end_ + bytes.size());
  const auto first = buffer_.begin() + static_cast<std::ptrdiff_t>(released_);
  std::copy_backward(first, buffer_.begin() + static_cast<std::ptrdiff_t>(end_),
                     buffer_.begin() + static_cast<std::ptrdiff_t>(end_ + bytes.size()));
  std::ranges::copy(bytes, first);
  released_ += bytes.size();
  end_ += bytes.size();
}

}  // namespace platform::linux::lens
