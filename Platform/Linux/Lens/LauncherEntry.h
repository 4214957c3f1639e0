// Entries in the menu of applications that start an application through a lens.
//
// Threads: any. Texts are UTF-8, in the format of desktop entries.
// Failure: absent when the text is no entry of an application.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform::linux::lens {

// The entry of an application, made over: it has another name, in all languages, and its command lines begin with
// `launcher`. It opens no files of its own accord and is not activated over the bus, since either would go round the
// lens.
[[nodiscard]] std::optional<std::string> launcherEntry(std::string_view entry, std::string_view launcher);
// Whether an entry was made so.
[[nodiscard]] bool isLauncherEntry(std::string_view entry);

}  // namespace platform::linux::lens
