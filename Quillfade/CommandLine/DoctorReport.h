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
#include "Quillfade/CommandLine/RunningReport.h"
#include "Quillfade/Settings/UserRules.h"

namespace quillfade {

// What the running instance says, or why there is none to ask.
using RunningInstance = std::expected<RunningReport, platform::Error>;

[[nodiscard]] platform::Finding instanceFinding(const RunningInstance& running);
// The running instance knows its keys; without one, what came of trying them out counts. One finding for each key, or a
// single one where the desktop gives none.
[[nodiscard]] std::vector<platform::Finding> hotKeyFindings(const RunningInstance& running, const HotKeyTable& table,
                                                            const std::vector<platform::HotKeyAnswer>& trials,
                                                            const std::string& rulesPath);
// What is wrong with the stored area, if anything. `path` is where the settings are stored.
[[nodiscard]] std::vector<platform::Finding> regionFindings(const std::optional<platform::SettingValue>& stored,
                                                            const std::string& path);
// One finding, or one for each fault; none on a desktop without such rules, where the path is empty.
[[nodiscard]] std::vector<platform::Finding> rulesFindings(const UserRules& rules, bool hasFile,
                                                           const std::string& path);

[[nodiscard]] std::string doctorText(const std::vector<platform::Finding>& findings);
// One JSON object: "works", and "findings" with "subject", "state" (ok, note, unknown or problem), "detail" and "fix"
// each.
[[nodiscard]] std::string doctorJson(const std::vector<platform::Finding>& findings);
// Success only when nothing that is needed is missing or unknown.
[[nodiscard]] int doctorStatus(const std::vector<platform::Finding>& findings);

}  // namespace quillfade
