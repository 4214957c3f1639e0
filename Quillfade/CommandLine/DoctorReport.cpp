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
  } else if (answer == HotKeyAnswer::offered) {
    finding.detail = word + ": the desktop gives keys; Quillfade asks it for this one when it starts";
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
  using Kind = platform::HotKeyStanding::Kind;
  const std::string& said = state.standing.detail;
  Finding finding{.subject = state.combination, .health = Health::limited};
  const std::string bindIt = "or bind the command \"quillfade " + state.word + "\" there.";
  switch (state.standing.kind) {
    case Kind::held:
      finding.health = Health::works;
      finding.detail = "bound by the running Quillfade" + (said.empty() ? "" : ", as the desktop says: " + said);
      break;
    case Kind::taken:
      finding.health = Health::fails;
      finding.detail = "taken; it was refused to the running Quillfade";
      finding.fix = releaseFix(rulesPath) + " Then restart Quillfade.";
      break;
    case Kind::awaited:
      finding.detail = "the desktop has not answered yet";
      finding.fix = "If it asks on the screen, answer it.";
      break;
    case Kind::declined:
      finding.detail = "the desktop or its user declined it";
      finding.fix = "Allow it in the desktop's keyboard settings and restart Quillfade, " + bindIt;
      break;
    case Kind::unassigned:
      finding.detail = "the desktop knows it, but has given it no keys";
      finding.fix = "Choose keys in the desktop's keyboard settings, " + bindIt;
      break;
    case Kind::unavailable:
      finding.detail = "this desktop does not give it" + (said.empty() ? "" : ": " + said);
      break;
  }
  finding.detail = state.word + ": " + finding.detail;
  return finding;
}

// The command line is the way that is left, so this names its words.
Finding noKeysFinding(const HotKeyTable& table, const std::string& said) {
  std::string commands;
  for (const HotKey& key : table) {
    if (&key != &table.front()) commands += &key == &table.back() ? " and " : ", ";
    commands += "\"quillfade " + std::string{key.word} + '"';
  }
  return {.subject = "Hot keys",
          .health = Health::limited,
          .detail = "this desktop gives Quillfade no hot keys" + (said.empty() ? "" : ": " + said),
          .fix = "Bind the commands " + commands + " to keys in the desktop's own settings."};
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
    const auto isUnavailable = [](const HotKeyState& state) {
      return state.standing.kind == platform::HotKeyStanding::Kind::unavailable;
    };
    if (!running->hotKeys.empty() && std::ranges::all_of(running->hotKeys, isUnavailable))
      return {noKeysFinding(table, running->hotKeys.front().standing.detail)};
    for (const HotKeyState& state : running->hotKeys) findings.push_back(runningFinding(state, rulesPath));
    return findings;
  }
  if (std::ranges::find(trials, HotKeyAnswer::unavailable) != trials.end()) return {noKeysFinding(table, {})};
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
