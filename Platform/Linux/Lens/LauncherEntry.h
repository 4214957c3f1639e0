// Entries for the menu of applications that start an application through a lens.
//
// Threads: any. Texts are UTF-8, in the format of desktop entries. Failure: absent when the text is not the entry of an
// application.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform::linux::lens {

// The entry of an application, rewritten: it has another name in all languages, and its command lines begin with
// `launcher`. It is not registered for any file types and is not activated over the bus, since either would bypass the
// lens.
[[nodiscard]] std::optional<std::string> launcherEntry(std::string_view entry, std::string_view launcher);
// Whether an entry was made this way.
[[nodiscard]] bool isLauncherEntry(std::string_view entry);

}  // namespace platform::linux::lens
