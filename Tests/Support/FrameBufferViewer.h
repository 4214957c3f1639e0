// Looks at a screen offered over the RFB protocol (VNC), as viewers do.
//
// Threads: one at a time; calls block.
// Failure: throws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace support {

class FrameBufferViewer {
 public:
  // Connects to a server that asks for no password, on the socket in that file.
  explicit FrameBufferViewer(const std::filesystem::path& socket);
  ~FrameBufferViewer();
  FrameBufferViewer(const FrameBufferViewer&) = delete;
  FrameBufferViewer& operator=(const FrameBufferViewer&) = delete;

  // The colour, 0x00RRGGBB, that the server now gives for this point.
  [[nodiscard]] std::uint32_t at(int x, int y);

 private:
  [[nodiscard]] std::string receive(std::size_t count);
  [[nodiscard]] std::size_t receiveNumber(std::size_t bytes);
  void send(const std::string& bytes);

  int socket_ = -1;
};

}  // namespace support
