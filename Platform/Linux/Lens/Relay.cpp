#include "Platform/Linux/Lens/Relay.h"

#include <sys/epoll.h>

#include <algorithm>
#include <array>
#include <utility>

namespace platform::linux::lens {

namespace {

// Stop after this many rounds, so that others get a turn, but before reading: epoll reports socket data again, but not
// data already buffered.
constexpr int mostRounds = 16;

// The rest of a long message goes from socket to socket, except for its end. Programs collect about this much before
// they send it, so the end may come in one piece with the beginning of the next message, which may carry descriptors.
constexpr std::uint64_t endOfMessage = std::uint64_t{16} * 1024;
constexpr std::uint64_t worthMoving = endOfMessage + std::uint64_t{16} * 1024;
// How much to receive at once after a long message, so that most of the next long one can be moved.
constexpr std::uint64_t nextBeginning = std::uint64_t{4} * 1024;

constexpr std::uint8_t getInputFocus = 43;
constexpr std::uint8_t damageAdd = 4;

template <typename Stream>
Channel::Outcome takeIn(Channel& channel, Stream& stream, bool mayMove, bool& mayBeMore) {
  const std::uint64_t body = stream.remainingBody();
  if (!mayMove || channel.hasPending() || body < worthMoving) {
    const bool isSeries = mayMove && stream.lastLength() >= worthMoving;
    const Channel::Outcome outcome = isSeries ? channel.receive(body + nextBeginning) : channel.receive();
    mayBeMore = channel.mayHaveLeft();
    return outcome;
  }
  std::uint64_t moved = 0;
  const Channel::Outcome outcome = channel.move(body - endOfMessage, moved);
  mayBeMore = channel.mayHaveLeft();
  stream.skip(moved);
  return outcome;
}

}  // namespace

Relay::Relay(posix::FileDescriptor client, posix::FileDescriptor server, const protocol::SetupRequest& setup,
             const protocol::Credential& credential, protocol::ScreenNames& names, PictureSource& pictures)
    : client_(std::move(client)),
      server_(std::move(server)),
      names_(names),
      pictures_(pictures),
      order_(setup.order),
      toServer_(client_.get(), server_.get()),
      toClient_(server_.get(), client_.get()),
      requestStream_(setup.order, names, replies_),
      replyStream_(setup.order, names, replies_) {
  toServer_.insert(protocol::setupRequest(setup, credential));
}

bool Relay::clientReady(std::uint32_t events) {
  if ((events & EPOLLOUT) != 0 && !pumpReplies()) return false;
  const bool isWaiting = isServerFull_ || waiting_ != Waiting::no;
  if (isWaiting && (events & (EPOLLHUP | EPOLLERR)) != 0) {
    isClientGone_ = true;
    // Nobody is left to read for.
    return waiting_ == Waiting::no;
  }
  return isWaiting || (events & (EPOLLIN | EPOLLHUP | EPOLLERR)) == 0 || pumpRequests();
}

bool Relay::serverReady(std::uint32_t events) {
  if ((events & EPOLLOUT) != 0 && !pumpRequests()) return false;
  if (isClientFull_) return (events & (EPOLLHUP | EPOLLERR)) == 0;
  return (events & (EPOLLIN | EPOLLHUP | EPOLLERR)) == 0 || pumpReplies();
}

bool Relay::pictureReady(std::uint64_t request, std::uint32_t pixmap) {
  if (waiting_ != Waiting::forPicture || request < awaitedPicture_) return true;
  waiting_ = Waiting::no;
  requestStream_.provide(pixmap);
  return pumpRequests();
}

std::uint32_t Relay::clientEvents() const {
  const std::uint32_t in = isServerFull_ || waiting_ != Waiting::no ? 0U : std::uint32_t{EPOLLIN};
  return in | (isClientFull_ ? std::uint32_t{EPOLLOUT} : 0U);
}

std::uint32_t Relay::serverEvents() const {
  return (isClientFull_ ? 0U : std::uint32_t{EPOLLIN}) | (isServerFull_ ? std::uint32_t{EPOLLOUT} : 0U);
}

bool Relay::pumpRequests() {
  bool mayBeMore = true;
  for (int round = 0;; ++round) {
    if (!takeRequests()) return false;
    const Channel::Outcome sent = toServer_.send();
    passing_ = requestStream_.lastLength() >= worthMoving ? Passing::longRequest : Passing::shortMessages;
    if (sent == Channel::Outcome::closed) return false;
    isServerFull_ = sent == Channel::Outcome::blocked;
    // Once a program is gone, no event reports what it left behind.
    const bool isTurnOver = !isClientGone_ && (!mayBeMore || round >= mostRounds);
    if (isServerFull_ || waiting_ != Waiting::no || isTurnOver) return true;
    const Channel::Outcome taken = takeIn(toServer_, requestStream_, true, mayBeMore);
    if (taken == Channel::Outcome::closed) return false;
    if (taken == Channel::Outcome::blocked && !toServer_.hasReleased()) return true;
  }
}

bool Relay::pumpReplies() {
  bool mayBeMore = true;
  for (int round = 0;; ++round) {
    if (!takeReplies()) return false;
    const Channel::Outcome sent = toClient_.send();
    passing_ = replyStream_.lastLength() >= worthMoving ? Passing::longReply : Passing::shortMessages;
    if (sent == Channel::Outcome::closed) return false;
    isClientFull_ = sent == Channel::Outcome::blocked;
    if (isClientFull_ || !mayBeMore || round >= mostRounds) return true;
    // The server sends a descriptor with whatever bytes it has not sent yet, even in the middle of a long reply.
    const bool mayMove = !requestStream_.asksForDescriptors();
    const Channel::Outcome taken = takeIn(toClient_, replyStream_, mayMove, mayBeMore);
    if (taken == Channel::Outcome::closed) return false;
    if (taken == Channel::Outcome::blocked && !toClient_.hasReleased()) return true;
  }
}

bool Relay::takeRequests() {
  while (toServer_.hasPending() && waiting_ == Waiting::no) {
    const protocol::RequestStream::Step step = requestStream_.advance(toServer_.pending());
    toServer_.release(step.length);
    if (step.stop == protocol::RequestStream::Stop::malformed)
      return complain("A program sent something that is not X protocol.");
    if (step.stop == protocol::RequestStream::Stop::needsMore) return true;
    if (step.stop == protocol::RequestStream::Stop::damageMade) {
      reportWholeScreen();
    } else {
      beginRead();
    }
  }
  return true;
}

void Relay::beginRead() {
  if (replyStream_.lastRequest() == requestStream_.requestCount()) return askForPicture();
  std::array<std::byte, 4> question{std::byte{getInputFocus}};
  protocol::Wire(order_).put16(&question[2], 1);
  toServer_.insert(question);
  question_ = requestStream_.countOwnRequest();
  replies_.push_back({question_, protocol::ReplyTo::barrier});
  waiting_ = Waiting::forServer;
}

void Relay::askForPicture() {
  waiting_ = Waiting::forPicture;
  awaitedPicture_ = pictures_.requestPicture();
}

// As the server does for a client that begins to follow a window's damage.
void Relay::reportWholeScreen() {
  std::array<std::byte, 12> report{std::byte{names_.extensions.damage}, std::byte{damageAdd}};
  const protocol::Wire wire(order_);
  wire.put16(&report[2], 3);
  wire.put32(&report[4], names_.boards.pixmaps.back());
  wire.put32(&report[8], names_.boards.whole);
  toServer_.insert(report);
  replies_.push_back({requestStream_.countOwnRequest(), protocol::ReplyTo::nothing});
}

bool Relay::takeReplies() {
  if (!takeSetupReply()) return false;
  while (toClient_.hasPending() && setupLeft_ == 0) {
    const protocol::ReplyStream::Step step = replyStream_.advance(toClient_.pending());
    toClient_.release(step.length);
    if (!step.isBarrierNext) return true;
    toClient_.drop(protocol::ReplyStream::messageSize);
    if (waiting_ == Waiting::forServer && replyStream_.lastRequest() == question_) askForPicture();
  }
  return true;
}

bool Relay::takeSetupReply() {
  if (!setupLeft_) {
    const auto length = protocol::setupReplyLength(order_, toClient_.pending());
    if (!length) return complain(length.error().localizedDescription);
    if (!*length) return true;
    setupLeft_ = *length;
  }
  const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(*setupLeft_, toClient_.pending().size()));
  toClient_.release(count);
  *setupLeft_ -= count;
  return true;
}

bool Relay::complain(std::string sentence) {
  complaint_ = std::move(sentence);
  return false;
}

}  // namespace platform::linux::lens
