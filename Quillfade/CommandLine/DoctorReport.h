// What "quillfade doctor" says: what works on this desktop, what does not and why, and what to do about it.
//
// Pure.
#pragma once

#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Error.h"
#include "Platform/Examination.h"
#include "Platform/Settings.h"
#include "Quillfade/Keys/HotKeyReport.h"
#include "Quillfade/Settings/UserRules.h"

namespace quillfade {

// The hot keys of the running instance, or why they are not known.
using RunningHotKeys = std::expected<std::vector<HotKeyState>, platform::Error>;

[[nodiscard]] platform::Finding instanceFinding(const RunningHotKeys& running);
// From the running instance, which knows its keys, or else from trying them out. One finding per key.
[[nodiscard]] std::vector<platform::Finding> hotKeyFindings(const RunningHotKeys& running, const HotKeyTable& table,
                                                            const std::vector<platform::HotKeyAnswer>& trials,
                                                            const std::string& rulesPath);
// What is wrong with the stored area, if anything. `path` is where the settings are stored.
[[nodiscard]] std::vector<platform::Finding> regionFindings(const std::optional<platform::SettingValue>& stored,
                                                            const std::string& path);
// One finding, or one per fault.
[[nodiscard]] std::vector<platform::Finding> rulesFindings(const UserRules& rules, bool hasFile,
                                                           const std::string& path);

[[nodiscard]] std::string doctorText(const std::vector<platform::Finding>& findings);
// One JSON object: "works", and "findings" with "subject", "state" (ok, note or problem), "detail" and "fix" each.
[[nodiscard]] std::string doctorJson(const std::vector<platform::Finding>& findings);
// Success unless there is a problem.
[[nodiscard]] int doctorStatus(const std::vector<platform::Finding>& findings);

}  // namespace quillfade
