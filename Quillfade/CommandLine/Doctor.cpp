#include "Quillfade/CommandLine/Doctor.h"

#include <chrono>
#include <vector>

#include "Platform/Examination.h"
#include "Platform/RulesFile.h"
#include "Quillfade/CommandLine/CommandLine.h"
#include "Quillfade/CommandLine/DoctorReport.h"
#include "Quillfade/Cover/DiagnosticLog.h"
#include "Quillfade/Settings/StoredRegion.h"

namespace quillfade {
namespace {

constexpr std::chrono::seconds patience{3};

RunningInstance askRunningInstance() {
  const auto reply = platform::sendToRunningInstance({"doctor"}, patience);
  if (!reply) return std::unexpected(reply.error());
  if (reply->status != exitstatus::success) return std::unexpected(platform::Error{reply->output});
  return parseRunningReport(reply->output);
}

platform::ExaminationRequest questions(const HotKeyTable& keys) {
  platform::ExaminationRequest request{.logFile = std::string{DiagnosticLog::relativePath}, .settings = {regionKey}};
  for (const HotKey& key : keys) request.hotKeys.push_back({key.combination.keyCode, key.combination.modifiers});
  return request;
}

}  // namespace

platform::RemoteReply examine(bool asJson) {
  const auto rulesFile = platform::makeRulesFile();
  const auto content = rulesFile->read();
  const UserRules rules = userRules(*rulesFile);
  const RunningInstance running = askRunningInstance();
  auto request = questions(rules.hotKeys);
  // The running instance holds its keys, so trying them out would find them taken.
  if (running) request.hotKeys.clear();
  if (running) request.mayCapture = running->mayCapture;
  const auto examination = platform::examineDesktop(request);

  std::vector<platform::Finding> findings = examination.findings;
  const auto append = [&](const std::vector<platform::Finding>& more) {
    findings.insert(findings.end(), more.begin(), more.end());
  };
  const auto region = examination.settings.find(regionKey);
  if (region != examination.settings.end()) append(regionFindings(region->second, examination.settingsFile));
  append({instanceFinding(running)});
  append(hotKeyFindings(running, rules.hotKeys, examination.hotKeys, rulesFile->path()));
  append(rulesFindings(rules, content && content->has_value(), rulesFile->path()));
  return {doctorStatus(findings), asJson ? doctorJson(findings) : doctorText(findings)};
}

}  // namespace quillfade
