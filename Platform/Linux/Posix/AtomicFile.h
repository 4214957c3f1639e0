// Replacing a small file so that a reader, a crash or a power cut finds either the old content or the new one.
//
// Threads: any; blocks until the content is on the disk.
// Failure: sentences with the system's reason; the old file is untouched then.
#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "Platform/Error.h"

namespace platform::linux::posix {

// Writes beside the file and renames onto it. A symbolic link is followed and stays a link, also when its target does
// not exist yet. Missing directories are made for the user alone (0700), the file is (0600).
[[nodiscard]] std::expected<void, Error> replaceFile(const std::string& path, std::string_view bytes);

// Where a path leads once all links at its end are followed; the path itself when they lead in a circle.
[[nodiscard]] std::string followLinks(const std::string& path);

}  // namespace platform::linux::posix
