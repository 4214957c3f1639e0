#include "Tests/Support/TamperingProxy.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <span>
#include <stdexcept>

namespace support {
namespace {

constexpr int pollMilliseconds = 50;  // how long a stop may go unnoticed
constexpr std::size_t setupLength = 12;
// Requests that name windows are short; anything longer is text or pixels.
constexpr std::size_t longestLookedAt = 256;
constexpr std::uint8_t firstExtension = 128;
// Clients number what they make from zero. Two coordinates together sometimes look like a higher number.
constexpr std::uint32_t idsInUse = 0x10000;

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) throw std::runtime_error("The path of a socket is too long: " + path);
  path.copy(address.sun_path, path.size());
  return address;
}

int unixSocket() {
  const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (descriptor < 0) throw std::runtime_error("No socket could be made.");
  return descriptor;
}

std::string socketPath(const std::string& number) { return "/tmp/.X11-unix/X" + number; }

// Far above the numbers that servers choose for themselves.
int listenAtFreeNumber(int descriptor) {
  constexpr int first = 20000;
  constexpr int last = 30000;
  for (int number = first + getpid() % 1000; number < last; ++number) {
    const sockaddr_un address = addressOf(socketPath(std::to_string(number)));
    if (bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) continue;
    if (listen(descriptor, 8) == 0) return number;
  }
  throw std::runtime_error("There is no free display number.");
}

template <typename T>
T number(std::span<const std::uint8_t> bytes, std::size_t offset) {
  T value{};
  std::memcpy(&value, bytes.data() + offset, sizeof value);
  return value;
}

std::size_t padded(std::size_t length) { return (length + 3) / 4 * 4; }

bool sendAll(int descriptor, const std::uint8_t* bytes, std::size_t length) {
  while (length > 0) {
    const ssize_t sent = send(descriptor, bytes, length, MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes += sent;
    length -= static_cast<std::size_t>(sent);
  }
  return true;
}

}  // namespace

// One client of the proxy, on both sides.
class TamperingProxy::Conversation {
 public:
  Conversation(TamperingProxy& proxy, int client, int server) : proxy_(proxy), client_(client), server_(server) {}
  ~Conversation() {
    close(client_);
    close(server_);
  }
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  void run() {
    while (!proxy_.ends_) {
      std::array<pollfd, 2> both{{{client_, POLLIN, 0}, {server_, POLLIN, 0}}};
      poll(both.data(), both.size(), pollMilliseconds);
      if (both[0].revents != 0 && !(receive(client_, waiting_) && passRequests())) return;
      if (both[1].revents != 0 && !passAnswers()) return;
    }
  }

 private:
  static bool receive(int from, std::vector<std::uint8_t>& into) {
    std::array<std::uint8_t, 65536> bytes{};
    const ssize_t count = recv(from, bytes.data(), bytes.size(), 0);
    if (count > 0) into.insert(into.end(), bytes.begin(), bytes.begin() + count);
    return count > 0;
  }

  // The length of the message at the front; 0 until enough of it is here to tell.
  [[nodiscard]] std::size_t nextLength(std::span<const std::uint8_t> bytes) const {
    if (!isSetUp_) {
      if (bytes.size() < setupLength) return 0;
      return setupLength + padded(number<std::uint16_t>(bytes, 6)) + padded(number<std::uint16_t>(bytes, 8));
    }
    if (bytes.size() < 8) return bytes.size() >= 4 ? std::size_t{number<std::uint16_t>(bytes, 2)} * 4 : 0;
    const std::size_t units = number<std::uint16_t>(bytes, 2);
    return 4 * (units != 0 ? units : number<std::uint32_t>(bytes, 4));
  }

  bool passRequests() {
    std::size_t done = 0;
    while (true) {
      const std::span<std::uint8_t> rest = std::span(waiting_).subspan(done);
      const std::size_t length = nextLength(rest);
      if (length == 0 || rest.size() < length) break;
      if (isSetUp_) proxy_.pass(rest.data(), length);
      isSetUp_ = true;
      done += length;
    }
    const bool isSent = sendAll(server_, waiting_.data(), done);
    waiting_.erase(waiting_.begin(), waiting_.begin() + static_cast<std::ptrdiff_t>(done));
    return isSent;
  }

  bool passAnswers() {
    std::vector<std::uint8_t> bytes;
    return receive(server_, bytes) && sendAll(client_, bytes.data(), bytes.size());
  }

  TamperingProxy& proxy_;
  int client_;
  int server_;
  bool isSetUp_ = false;
  std::vector<std::uint8_t> waiting_;
};

TamperingProxy::TamperingProxy(const std::string& display, xcb_connection_t* foreignClient)
    : serverPath_(socketPath(display.substr(1))),
      foreignBase_(xcb_get_setup(foreignClient)->resource_id_base),
      idMask_(xcb_get_setup(foreignClient)->resource_id_mask),
      listener_(unixSocket()),
      number_(listenAtFreeNumber(listener_)) {
  acceptor_ = std::jthread([this] { accept(); });
}

TamperingProxy::~TamperingProxy() {
  ends_ = true;
  acceptor_.join();
  conversations_.clear();
  close(listener_);
  unlink(socketPath(std::to_string(number_)).c_str());
}

void TamperingProxy::accept() {
  while (!ends_) {
    pollfd waiting{listener_, POLLIN, 0};
    if (poll(&waiting, 1, pollMilliseconds) <= 0) continue;
    const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0) continue;
    const int server = unixSocket();
    const sockaddr_un address = addressOf(serverPath_);
    if (connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      close(client);
      close(server);
      continue;
    }
    conversations_.emplace_back([this, client, server] { Conversation(*this, client, server).run(); });
  }
}

void TamperingProxy::hideExtension(const std::string& name) {
  const std::lock_guard lock(mutex_);
  hiddenExtension_ = name;
}

void TamperingProxy::tamperWith(std::optional<RequestKind> kind) {
  const std::lock_guard lock(mutex_);
  kind_ = kind;
}

std::map<RequestKind, std::size_t> TamperingProxy::seen() const {
  const std::lock_guard lock(mutex_);
  return seen_;
}

void TamperingProxy::forgetSeen() {
  const std::lock_guard lock(mutex_);
  seen_.clear();
}

void TamperingProxy::pass(std::uint8_t* request, std::size_t length) {
  const std::span<std::uint8_t> bytes(request, length);
  const RequestKind kind{bytes[0], bytes[0] >= firstExtension ? bytes[1] : std::uint8_t{0}};
  if (length > longestLookedAt) return;
  const std::lock_guard lock(mutex_);
  if (kind.major == XCB_QUERY_EXTENSION && !hiddenExtension_.empty()) {
    char* const name = reinterpret_cast<char*>(request) + 8;
    if (std::string_view(name, number<std::uint16_t>(bytes, 4)) == hiddenExtension_) *name = '?';
  }
  for (std::size_t offset = 4; offset + 4 <= length; offset += 4) {
    if (number<std::uint32_t>(bytes, offset) - foreignBase_ >= idsInUse) continue;
    const bool isTampered = kind_ == kind;
    seen_[kind] += isTampered ? 1 : 0;
    if (!isTampered) continue;
    const std::uint32_t nobody = foreignBase_ | idMask_;
    std::memcpy(request + offset, &nobody, sizeof nobody);
  }
}

}  // namespace support
