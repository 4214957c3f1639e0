// PNG with stored (uncompressed) blocks: good enough to look at a picture, and it needs no library.

#include <algorithm>
#include <array>
#include <fstream>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Tests/Support/Picture.h"

namespace support {

namespace {

void appendByte(std::string& out, std::uint32_t value) { out += static_cast<char>(value & 0xff); }

void appendBigEndian(std::string& out, std::uint32_t value) {
  for (const unsigned shift : {24U, 16U, 8U, 0U}) appendByte(out, value >> shift);
}

std::uint32_t crc32(std::string_view bytes) {
  std::uint32_t crc = 0xffffffff;
  for (const char byte : bytes) {
    crc ^= static_cast<std::uint8_t>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xedb88320U : 0U);
  }
  return ~crc;
}

std::uint32_t adler32(std::string_view bytes) {
  std::uint32_t low = 1;
  std::uint32_t high = 0;
  for (const char byte : bytes) {
    low = (low + static_cast<std::uint8_t>(byte)) % 65521;
    high = (high + low) % 65521;
  }
  return high << 16U | low;
}

void appendChunk(std::string& out, std::string_view type, std::string_view data) {
  appendBigEndian(out, static_cast<std::uint32_t>(data.size()));
  const std::string body = std::string(type) + std::string(data);
  out += body;
  appendBigEndian(out, crc32(body));
}

std::string storedStream(std::string_view data) {
  constexpr std::size_t longestBlock = 65535;
  std::string out{"\x78\x01"};
  for (std::size_t start = 0; start < data.size(); start += longestBlock) {
    const std::string_view block = data.substr(start, longestBlock);
    const auto length = static_cast<std::uint32_t>(block.size());
    appendByte(out, start + length == data.size() ? 1 : 0);
    for (const std::uint32_t field : {length, ~length}) {
      appendByte(out, field);
      appendByte(out, field >> 8U);
    }
    out += block;
  }
  appendBigEndian(out, adler32(data));
  return out;
}

std::string scanLines(const Picture& picture) {
  std::string lines;
  for (int y = 0; y < picture.height(); ++y) {
    appendByte(lines, 0);  // no filter
    for (int x = 0; x < picture.width(); ++x) {
      const std::uint32_t pixel = picture.at(x, y);
      for (const unsigned shift : {16U, 8U, 0U}) appendByte(lines, pixel >> shift);
    }
  }
  return lines;
}

}  // namespace

void writePng(const Picture& picture, const std::filesystem::path& path) {
  std::string header;
  appendBigEndian(header, static_cast<std::uint32_t>(picture.width()));
  appendBigEndian(header, static_cast<std::uint32_t>(picture.height()));
  for (const std::uint32_t field : {8U, 2U, 0U, 0U, 0U}) appendByte(header, field);  // 8 bits, RGB

  std::string file{"\x89PNG\r\n\x1a\n"};
  appendChunk(file, "IHDR", header);
  appendChunk(file, "IDAT", storedStream(scanLines(picture)));
  appendChunk(file, "IEND", {});
  std::ofstream stream(path, std::ios::binary | std::ios::trunc);
  stream << file;
  if (!stream.flush()) throw std::runtime_error("The picture " + path.string() + " could not be written.");
}

}  // namespace support
