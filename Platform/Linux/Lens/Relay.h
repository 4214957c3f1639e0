// One program's connection through a lens: what it sends, what the server sends, and the wait for a picture of the
// screen before a read goes on.
//
// Before a read, the server has carried out everything that the program sent earlier (if that is not known, the lens
// asks a question of its own). Then the picture is brought up to date, and the read is passed on.
// Threads: one at a time. Ownership: owns both sockets; keeps references to names and pictures, which must outlive it.
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

// Provides pictures of the screen.
class PictureSource {
 public:
  virtual ~PictureSource() = default;
  // Requests a picture of the screen as it is from now on; the number says which answer is late enough.
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
  // This picture answers all requests up to this number.
  [[nodiscard]] bool pictureReady(std::uint64_t request, std::uint32_t pixmap);

  // The events to wait for now, as for epoll.
  [[nodiscard]] std::uint32_t clientEvents() const;
  [[nodiscard]] std::uint32_t serverEvents() const;
  // Read its socket only as fast as the server takes the data, and do not wait for it.
  [[nodiscard]] bool isClientGone() const { return isClientGone_; }
  // What was passed on last, in either direction.
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
  std::uint64_t question_ = 0;  // the number of the lens's own last question to the server
  std::uint64_t awaitedPicture_ = 0;
  Passing passing_ = Passing::shortMessages;
  bool isClientGone_ = false;
  bool isServerFull_ = false;
  bool isClientFull_ = false;
  std::string complaint_;
};

}  // namespace platform::linux::lens
