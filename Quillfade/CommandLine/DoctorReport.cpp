#include "Quillfade/CommandLine/DoctorReport.h"

#include <algorithm>

#include "Quillfade/Basics/Fatal.h"
#include "Quillfade/Basics/JsonText.h"
#include "Quillfade/Basics/NumberText.h"
#include "Quillfade/CommandLine/CommandLine.h"
#include "Quillfade/Settings/StoredRegion.h"

namespace quillfade {
namespace {

using platform::Finding;
using platform::Health;
using platform::HotKeyAnswer;

std::string stateWord(Health health) {
  switch (health) {
    case Health::works:
      return "ok";
    case Health::unseen:
      return "unknown";
    case Health::limited:
      return "note";
    case Health::fails:
      return "problem";
  }
  return {};
}

std::size_t problemsIn(const std::vector<Finding>& findings) {
  return static_cast<std::size_t>(std::ranges::count(findings, Health::fails, &Finding::health));
}

bool works(const std::vector<Finding>& findings) {
  return std::ranges::none_of(
      findings, [](Health health) { return health == Health::fails || health == Health::unseen; }, &Finding::health);
}

std::string summary(const std::vector<Finding>& findings) {
  const std::size_t problems = problemsIn(findings);
  if (works(findings)) return "Everything required works.\n";
  if (problems == 0) return "There is no problem that could be seen from here.\n";
  return problems == 1 ? "There is 1 problem.\n" : "There are " + std::to_string(problems) + " problems.\n";
}

std::string releaseFix(const std::string& rulesPath) {
  const std::string fix = "Release it in the keyboard settings of the desktop or of the program that holds it";
  return rulesPath.empty() ? fix + '.' : fix + ", or choose another under \"hotKeys\" in " + rulesPath + '.';
}

Finding triedFinding(const HotKey& key, HotKeyAnswer answer, const std::string& rulesPath) {
  const std::string word{key.word};
  Finding finding{.subject = combinationText(key.combination)};
  if (answer == HotKeyAnswer::granted) {
    finding.detail = word + ": free; the display server granted it to this check";
  } else if (answer == HotKeyAnswer::shared) {
    finding.detail = word + ": granted to this check; another program may have it, too";
  } else if (answer == HotKeyAnswer::refused) {
    finding.health = Health::fails;
    finding.detail = word + ": taken; the display server refused it, so another program holds it";
    finding.fix = releaseFix(rulesPath);
  } else {
    finding.health = Health::limited;
    finding.detail = word + ": could not be tested";
  }
  return finding;
}

Finding runningFinding(const HotKeyState& state, const std::string& rulesPath) {
  if (state.isBound) {
    return {.subject = state.combination, .detail = state.word + ": bound by the running Quillfade"};
  }
  return {.subject = state.combination,
          .health = Health::fails,
          .detail = state.word + ": taken; the display server refused it to the running Quillfade",
          .fix = releaseFix(rulesPath) + " Then restart Quillfade."};
}

}  // namespace

Finding instanceFinding(const RunningInstance& running) {
  if (running) return {.subject = "Quillfade", .detail = "running"};
  return {.subject = "Quillfade",
          .health = Health::limited,
          .detail = running.error().localizedDescription,
          .fix = "Start it from the application menu, or with \"quillfade\"."};
}

std::vector<Finding> hotKeyFindings(const RunningInstance& running, const HotKeyTable& table,
                                    const std::vector<HotKeyAnswer>& trials, const std::string& rulesPath) {
  std::vector<Finding> findings;
  if (running) {
    for (const HotKeyState& state : running->hotKeys) findings.push_back(runningFinding(state, rulesPath));
    return findings;
  }
  for (std::size_t i = 0; i < table.size(); ++i) {
    const auto answer = i < trials.size() ? trials[i] : HotKeyAnswer::unknown;
    findings.push_back(triedFinding(table.at(i), answer, rulesPath));
  }
  return findings;
}

std::vector<Finding> regionFindings(const std::optional<platform::SettingValue>& stored, const std::string& path) {
  const auto region = storedRegion(stored);
  if (!region || (fitsWholeNumber(region->width()) && fitsWholeNumber(region->height()))) return {};
  return {{.subject = "Area",
           .health = Health::fails,
           .detail = "the stored area is " + numberText(region->width()) + " × " + numberText(region->height()) +
                     " points, too large for the menu to show: opening the menu ends Quillfade",
           .fix = "Choose another with \"quillfade whole-screen\" or \"quillfade select-area\", or remove \"" +
                  std::string{regionKey} + "\" from " + path + "."}};
}

std::vector<Finding> rulesFindings(const UserRules& rules, bool hasFile, const std::string& path) {
  if (path.empty()) return {};
  const std::string subject = "Your rules";
  if (!hasFile && rules.faults.empty()) {
    return {{.subject = subject, .detail = "none; they would go in " + path}};
  }
  std::vector<Finding> findings;
  for (const std::string& fault : rules.faults) {
    findings.push_back({.subject = subject,
                        .health = Health::fails,
                        .detail = fault,
                        .fix = "Correct it in " + path + "; until then it has no effect."});
  }
  if (findings.empty()) findings.push_back({.subject = subject, .detail = path + " is valid"});
  return findings;
}

std::string doctorText(const std::vector<Finding>& findings) {
  std::size_t width = 0;
  for (const Finding& finding : findings) width = std::max(width, finding.subject.size());
  std::string text;
  for (const Finding& finding : findings) {
    std::string state = stateWord(finding.health);
    state.resize(std::string_view{"problem"}.size(), ' ');
    text +=
        state + "  " + finding.subject + std::string(width - finding.subject.size() + 2, ' ') + finding.detail + '\n';
    if (!finding.fix.empty()) text += std::string(state.size() + width + 4, ' ') + finding.fix + '\n';
  }
  return text + '\n' + summary(findings);
}

std::string doctorJson(const std::vector<Finding>& findings) {
  std::string text = std::string{R"({"works": )"} + (works(findings) ? "true" : "false") + R"(, "findings": [)";
  for (const Finding& finding : findings) {
    if (&finding != &findings.front()) text += ", ";
    text += R"({"subject": )" + jsonText(finding.subject) + R"(, "state": )" + jsonText(stateWord(finding.health)) +
            R"(, "detail": )" + jsonText(finding.detail) + R"(, "fix": )" + jsonText(finding.fix) + '}';
  }
  return text + "]}\n";
}

int doctorStatus(const std::vector<Finding>& findings) {
  return works(findings) ? exitstatus::success : exitstatus::failure;
}

}  // namespace quillfade
