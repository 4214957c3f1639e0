#include <iostream>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "Platform/Platform.h"
#include "Quillfade/CommandLine/CommandLine.h"
#include "Quillfade/CommandLine/Doctor.h"
#include "Quillfade/CommandLine/Share.h"
#include "Quillfade/ProcessEntry.h"

namespace {

using namespace quillfade;

int finish(const platform::RemoteReply& reply) {
  (reply.status == exitstatus::success ? std::cout : std::cerr) << reply.output << std::flush;
  return reply.status;
}

int send(const std::vector<std::string>& arguments) {
  const auto reply = platform::sendToRunningInstance(arguments, platform::untilAnswered, [] {
    std::cerr << "Quillfade is asking a question on the screen and will continue once it is answered." << std::endl;
  });
  return finish(reply ? *reply : platform::RemoteReply{exitstatus::failure, reply.error().localizedDescription + '\n'});
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const auto parsed = parseCommand(arguments);
  if (!parsed) return finish({exitstatus::usage, parsed.error() + " Try \"quillfade --help\".\n"});
  if (std::holds_alternative<command::Help>(*parsed)) return finish({exitstatus::success, helpText()});
  if (std::holds_alternative<command::Version>(*parsed)) return finish({exitstatus::success, versionText()});
  if (const auto* shared = std::get_if<command::Share>(&*parsed)) return finish(share(*shared));
  if (const auto* installed = std::get_if<command::InstallShare>(&*parsed)) return finish(installShare(*installed));
  if (const auto* removed = std::get_if<command::UninstallShare>(&*parsed)) return finish(uninstallShare(*removed));
  if (const auto* doctor = std::get_if<command::Doctor>(&*parsed)) {
    const auto report = examine(doctor->asJson);
    std::cout << report.output << std::flush;
    return report.status;
  }
  if (!std::holds_alternative<command::Start>(*parsed)) return send(arguments);

  const auto platform = platform::makePlatform(std::span<char* const>(argv, static_cast<std::size_t>(argc)));
  return runOnlyInstance(*platform);
}
