// One program's connection through a lens: what it sends, what the server sends, and the waiting for a picture of the
// screen before a read goes on.
//
// Before a read, everything that the program sent earlier has been carried out by the server (where that is not known
// already, a question of the lens's own finds out), then the picture is brought up to date, then the read is passed on.
// Threads: one at a time.
// Ownership: of both sockets; keeps references to names and composing, which outlive it.
// Failure: `complaint` says in a sentence what was wrong, if it was more than somebody hanging up.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Linux/Lens/BusyPolling.h"
#include "Platform/Linux/Lens/Channel.h"
#include "Platform/Linux/Posix/FileDescriptor.h"
#include "Platform/Linux/Protocol/PendingReplies.h"
#include "Platform/Linux/Protocol/ReplyStream.h"
#include "Platform/Linux/Protocol/RequestStream.h"
#include "Platform/Linux/Protocol/ScreenNames.h"
#include "Platform/Linux/Protocol/Setup.h"

namespace platform::linux::lens {

// Where pictures of the screen come from.
class PictureSource {
 public:
  virtual ~PictureSource() = default;
  // Wants one of the screen as it is from now on; the number says which answer is late enough.
  [[nodiscard]] virtual std::uint64_t requestPicture() = 0;
};

class Relay {
 public:
  // The client's setup goes to the server with the server's credential.
  Relay(posix::FileDescriptor client, posix::FileDescriptor server, const protocol::SetupRequest& setup,
        const protocol::Credential& credential, protocol::ScreenNames& names, PictureSource& pictures);

  [[nodiscard]] int client() const { return client_.get(); }
  [[nodiscard]] int server() const { return server_.get(); }

  // False when the connection is over.
  [[nodiscard]] bool clientReady(std::uint32_t events);
  [[nodiscard]] bool serverReady(std::uint32_t events);
  // A picture that answers all requests up to this number.
  [[nodiscard]] bool pictureReady(std::uint64_t request, std::uint32_t pixmap);

  // The events to wait for now, as for epoll.
  [[nodiscard]] std::uint32_t clientEvents() const;
  [[nodiscard]] std::uint32_t serverEvents() const;
  // Its socket is to be read no more than the server takes, and must not be waited for.
  [[nodiscard]] bool isClientGone() const { return isClientGone_; }
  // What was passed on last, in whichever direction.
  [[nodiscard]] Passing passing() const { return passing_; }
  // Whether the program follows the screen's damage, so that the picture has to be kept up to date.
  [[nodiscard]] bool followsDamage() const { return requestStream_.followsDamage(); }
  [[nodiscard]] const std::string& complaint() const { return complaint_; }

 private:
  enum class Waiting : std::uint8_t { no, forServer, forPicture };

  [[nodiscard]] bool pumpRequests();
  [[nodiscard]] bool pumpReplies();
  [[nodiscard]] bool takeRequests();
  [[nodiscard]] bool takeReplies();
  [[nodiscard]] bool takeSetupReply();
  void beginRead();
  void askForPicture();
  void reportWholeScreen();
  bool complain(std::string sentence);

  posix::FileDescriptor client_;
  posix::FileDescriptor server_;
  const protocol::ScreenNames& names_;
  PictureSource& pictures_;
  protocol::ByteOrder order_;
  protocol::PendingReplies replies_;
  Channel toServer_;
  Channel toClient_;
  protocol::RequestStream requestStream_;
  protocol::ReplyStream replyStream_;
  std::optional<std::uint64_t> setupLeft_;  // of the server's answer to the setup; absent until its length is known
  Waiting waiting_ = Waiting::no;
  std::uint64_t question_ = 0;  // the number of the lens's own that the server was asked last
  std::uint64_t awaitedPicture_ = 0;
  Passing passing_ = Passing::shortMessages;
  bool isClientGone_ = false;
  bool isServerFull_ = false;
  bool isClientFull_ = false;
  std::string complaint_;
};

}  // namespace platform::linux::lens
