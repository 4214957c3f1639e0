// Replaces a small file so that a reader finds either the old content or the new, even after a crash or a power cut.
//
// Threads: any; blocks until the content is on the disk. Failure: sentences with the system's reason; the old file is
// then untouched.
#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "Platform/Error.h"

namespace platform::linux::posix {

// Writes a file beside the old one and renames it. A symbolic link is followed and stays a link, even if its target
// does not exist yet. Missing directories are created for the user alone (0700), and so is the file (0600).
[[nodiscard]] std::expected<void, Error> replaceFile(const std::string& path, std::string_view bytes);

// Where a path leads once all links at its end are followed; the path itself if they form a loop.
[[nodiscard]] std::string followLinks(const std::string& path);

}  // namespace platform::linux::posix
