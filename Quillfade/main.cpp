#include <span>

#include "Platform/Platform.h"
#include "Quillfade/ProcessEntry.h"

int main(int argc, char** argv) {
  const auto platform = platform::makePlatform(std::span<char* const>(argv, static_cast<std::size_t>(argc)));
  return quillfade::runApplication(*platform);
}
