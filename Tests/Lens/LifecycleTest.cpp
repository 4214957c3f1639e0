// The life of a lens: who may connect, what it leaves behind, and how it ends.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <xcb/xcb.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>

#include "Platform/Linux/Lens/LocalSocket.h"
#include "Platform/Linux/Lens/PrivateAuthority.h"
#include "Platform/Linux/Lens/PrivateDisplay.h"
#include "Platform/Linux/Lens/ServerAddress.h"
#include "Platform/Linux/Protocol/Setup.h"
#include "Tests/Lens/OpenLens.h"
#include "Tests/Support/ProcessState.h"
#include "Tests/Support/Reply.h"
#include "Tests/Support/XServer.h"

namespace lens {
namespace {

namespace fs = std::filesystem;
using platform::linux::lens::localAddress;
using platform::linux::lens::PrivateAuthority;
using platform::linux::lens::PrivateDisplay;
using platform::linux::lens::ServerAddress;
using platform::linux::lens::socketPath;
using platform::linux::posix::FileDescriptor;
using platform::linux::protocol::Credential;
using support::ChildProcess;

std::string lockPath(int number) { return "/tmp/.X" + std::to_string(number) + "-lock"; }

unsigned modeOf(const std::string& path) {
  struct stat status{};
  return ::lstat(path.c_str(), &status) == 0 ? status.st_mode & 0777U : 0U;
}

std::size_t descriptorsOf(pid_t process) {
  const auto entries = fs::directory_iterator("/proc/" + std::to_string(process) + "/fd");
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

// Whether anything of the display is left. Another lens may have taken its number by now.
bool isLeft(int number, pid_t process) {
  std::ifstream file(lockPath(number));
  int holder = 0;
  const bool isLocked = static_cast<bool>(file >> holder);
  return isLocked ? holder == process : fs::exists(socketPath(number)) && !fs::exists(lockPath(number));
}

class Lens : public testing::Test {
 protected:
  std::optional<int> statusOf(const std::vector<std::string>& program) {
    ChildProcess process(throughLens("unmirrored", program), {{"DISPLAY", server_.display()}});
    return process.waitForExit();
  }

  support::XServer server_;
};

TEST_F(Lens, ItsFilesAreTheUsersAloneAndGoWithTheProgram) {
  std::string authority;
  int number = 0;
  pid_t process = 0;
  {
    OpenLens open(server_.display());
    authority = open.authority();
    number = open.number();
    process = open.process().id();
    EXPECT_EQ(modeOf(authority), 0600U);
    EXPECT_EQ(modeOf(fs::path(authority).parent_path()), 0700U);
    EXPECT_EQ(modeOf(socketPath(number)), 0600U);
    EXPECT_EQ(std::stoi(support::readFile(lockPath(number))), open.process().id());
    EXPECT_GE(number, 100);
  }
  EXPECT_FALSE(fs::exists(fs::path(authority).parent_path()));
  EXPECT_FALSE(isLeft(number, process));
}

TEST_F(Lens, TheExitStatusIsTheProgramsWhicheverWayItEnds) {
  EXPECT_EQ(statusOf({"true"}), 0);
  EXPECT_EQ(statusOf({"sh", "-c", "exit 42"}), 42);
  EXPECT_EQ(statusOf({"sh", "-c", "kill -KILL $$"}), 128 + SIGKILL);
  EXPECT_EQ(statusOf({"/no/such/program"}), 1);
}

TEST_F(Lens, SignalsGoOnToTheProgram) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGUSR1}) {
    OpenLens open(server_.display());
    const std::string authority = open.authority();
    open.process().signal(number);
    EXPECT_EQ(open.process().waitForExit(), 128 + number);
    EXPECT_FALSE(fs::exists(authority));
  }
}

TEST_F(Lens, SeveralRunSideBySide) {
  const OpenLens first(server_.display());
  const OpenLens second(server_.display());
  EXPECT_NE(first.display(), second.display());
  EXPECT_NE(support::readFile(first.authority()), support::readFile(second.authority()));
  EXPECT_EQ(first.connect()->screenFrame(), second.connect()->screenFrame());
}

TEST_F(Lens, OneInsideAnotherWorks) {
  const OpenLens outer(server_.display());
  ::setenv("XAUTHORITY", outer.authority().c_str(), 1);
  ChildProcess inner(throughLens("clean", {"sh", "-c", "exit 3"}),
                     {{"DISPLAY", outer.display()}, {"XAUTHORITY", outer.authority()}});
  ::unsetenv("XAUTHORITY");
  EXPECT_EQ(inner.waitForExit(), 3);
}

TEST_F(Lens, WithoutADisplayItSaysSo) {
  ChildProcess process(throughLens("unmirrored", {"true"}), {{"DISPLAY", ":98765"}});
  EXPECT_EQ(process.waitForExit(), 1);
  EXPECT_EQ(process.output(), "The X11 display :98765 cannot be reached.\n");
}

TEST_F(Lens, WithoutTheRightCookieNobodyConnects) {
  const OpenLens open(server_.display());
  const auto connect = [&](std::string name, std::string data) {
    xcb_auth_info_t info{static_cast<int>(name.size()), name.data(), static_cast<int>(data.size()), data.data()};
    xcb_connection_t* connection = xcb_connect_to_display_with_auth_info(open.display().c_str(), &info, nullptr);
    const int error = xcb_connection_has_error(connection);
    xcb_disconnect(connection);
    return error;
  };
  EXPECT_NE(connect("MIT-MAGIC-COOKIE-1", std::string(16, 'x')), 0);
  EXPECT_NE(connect("MIT-MAGIC-COOKIE-1", ""), 0);
  EXPECT_NE(connect("", ""), 0);
  EXPECT_TRUE(open.connect()->isConnected());
}

TEST_F(Lens, AnythingButXProtocolEndsOnlyThatConnectionWithASentence) {
  OpenLens open(server_.display());
  const auto program = open.connect();
  const FileDescriptor stranger(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const auto address = localAddress(socketPath(open.number()), false);
  ASSERT_EQ(::connect(stranger.get(), address.get(), address.length), 0);
  ASSERT_EQ(::send(stranger.get(), "GET / HTTP/1.0\n\n", 16, MSG_NOSIGNAL), 16);
  EXPECT_TRUE(support::waitReadable(stranger.get()));
  EXPECT_TRUE(support::waitUntil([&] {
    return open.process().output().contains(
        "quillfade: What it sends is not X protocol. Its connection to the display was closed.\n");
  }));
  program->sync();
  EXPECT_TRUE(program->isConnected());
}

TEST_F(Lens, AProgramThatGrabsTheServerAndDiesStopsNobody) {
  const OpenLens open(server_.display());
  {
    const auto program = open.connect();
    xcb_grab_server(program->connection());
    (void)program->screenshot({0, 0, 10, 10});
  }
  support::XClient outside(server_.display());
  outside.sync();
  EXPECT_TRUE(outside.isConnected());
}

TEST_F(Lens, ItEndsWithItsProgramEvenWhileSomebodyElseHoldsTheServer) {
  OpenLens open(server_.display());
  const auto program = open.connect();
  support::XClient outside(server_.display());
  xcb_grab_server(outside.connection());
  outside.sync();
  (void)xcb_get_image(program->connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, program->root(), 0, 0, 8, 8, ~0U);
  xcb_flush(program->connection());
  EXPECT_FALSE(support::waitReadable(xcb_get_file_descriptor(program->connection()), std::chrono::milliseconds(1500)));
  open.process().signal(SIGTERM);
  EXPECT_EQ(open.process().waitForExit(), 128 + SIGTERM);
}

TEST_F(Lens, WhoeverWaitedForTheServerGetsThePictureInTheEnd) {
  const OpenLens open(server_.display());
  const auto program = open.connect();
  for (int times = 0; times < 2; ++times) {
    support::XClient outside(server_.display());
    xcb_grab_server(outside.connection());
    outside.sync();
    const auto reading =
        xcb_get_image(program->connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, program->root(), 0, 0, 8, 8, ~0U);
    xcb_flush(program->connection());
    // Longer than the lens waits for a picture.
    EXPECT_FALSE(
        support::waitReadable(xcb_get_file_descriptor(program->connection()), std::chrono::milliseconds(1500)));
    xcb_ungrab_server(outside.connection());
    outside.sync();
    EXPECT_TRUE(support::waitForReply(program->connection(), xcb_get_image_reply, reading)) << times;
  }
}

TEST_F(Lens, AServerThatDiesEndsTheConnectionsWhileTheProgramGoesOn) {
  OpenLens open(server_.display());
  const auto program = open.connect();
  (void)program->screenshot({0, 0, 10, 10});
  server_.kill();
  EXPECT_FALSE(support::waitForReply(program->connection(), xcb_get_input_focus_reply,
                                     xcb_get_input_focus(program->connection())));
  const double before = support::processorSeconds(open.process().id());
  EXPECT_FALSE(support::waitUntil([&] { return support::processorSeconds(open.process().id()) - before > 0.3; },
                                  std::chrono::milliseconds(1500)))
      << "The lens does not come to rest.";
  EXPECT_TRUE(open.process().isRunning());
  open.process().signal(SIGTERM);
  EXPECT_EQ(open.process().waitForExit(), 128 + SIGTERM);
}

TEST_F(Lens, AHundredProgramsHalfOfThemKilledLeaveNothingBehind) {
  OpenLens open(server_.display());
  // After one complete read, no descriptors from the start-up are left open.
  const auto witness = open.connect();
  (void)witness->screenshot({0, 0, 10, 10});
  const std::size_t before = descriptorsOf(open.process().id());
  const support::Environment environment{{"DISPLAY", open.display()}, {"XAUTHORITY", open.authority()}};
  {
    std::vector<std::unique_ptr<ChildProcess>> programs;
    for (int i = 0; i < 100; ++i) {
      programs.push_back(std::make_unique<ChildProcess>(
          std::vector<std::string>{"sh", "-c", "while xwd -silent -root > /dev/null; do :; done"}, environment));
    }
    std::mt19937 random(7);
    std::ranges::shuffle(programs, random);
    support::XClient outside(server_.display());
    for (int i = 0; i < 50; ++i) {
      programs.back()->kill();
      programs.pop_back();
      outside.sync();
    }
    ASSERT_TRUE(outside.isConnected());
    for (auto& program : programs) program->signal(SIGKILL);
  }
  EXPECT_TRUE(support::waitUntil([&] { return descriptorsOf(open.process().id()) == before; }))
      << descriptorsOf(open.process().id()) << " descriptors, " << before << " before";
  EXPECT_EQ(open.connect()->screenshot({0, 0, 10, 10}).width(), 10);
  const std::string authority = open.authority();
  const pid_t process = open.process().id();
  open.process().terminate();
  EXPECT_FALSE(fs::exists(authority));
  EXPECT_FALSE(isLeft(open.number(), process));
}

TEST(PrivateDisplays, ALockOfADeadProcessIsTakenOver) {
  ChildProcess dead({"true"});
  ASSERT_EQ(dead.waitForExit(), 0);
  auto first = PrivateDisplay::make();
  ASSERT_TRUE(first);
  const int number = first->number();
  {
    const PrivateDisplay gone = std::move(*first);
  }
  support::writeFile(lockPath(number), std::to_string(dead.id()) + "\n");
  support::writeFile(socketPath(number), "");
  const auto display = PrivateDisplay::make();
  ASSERT_TRUE(display);
  EXPECT_EQ(display->number(), number);
}

TEST(PrivateAuthorities, TheCookieIsFoundInTheFileForThisDisplayAndNoOther) {
  const auto authority = PrivateAuthority::make(107);
  const auto another = PrivateAuthority::make(107);
  ASSERT_TRUE(authority && another);
  ::setenv("XAUTHORITY", authority->path().c_str(), 1);
  const Credential found = ServerAddress::parse(":107")->credential();
  const Credential none = ServerAddress::parse(":108")->credential();
  ::unsetenv("XAUTHORITY");
  EXPECT_EQ(found.data.size(), 16U);
  EXPECT_TRUE(authority->admits(found));
  EXPECT_FALSE(another->admits(found));
  EXPECT_TRUE(none.data.empty());
}

TEST(ServerAddresses, AnInvalidDisplayNameGivesNoAddress) {
  EXPECT_FALSE(ServerAddress::parse("nonsense"));
  EXPECT_EQ(ServerAddress::parse("there:3.2")->screen(), 2);
}

}  // namespace
}  // namespace lens
