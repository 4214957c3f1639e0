// An X server that accepts no further client: a live cover gets no connection for its pictures.
#include <memory>
#include <vector>

#include "Tests/EndToEnd/DrivenDesktop.h"

namespace endtoend {
namespace {

class FullServer : public DrivenDesktop {
 protected:
  FullServer() : DrivenDesktop({.arguments = {"-maxclients", "64"}}) {}

  // Whether the cover shows letters on black.
  static bool saysSomething(const Picture& picture) {
    return picture.count(0x000000, storedArea) > std::size_t{400} * 200 * 8 / 10 &&
           picture.count(0x000000, storedArea) < std::size_t{400} * 200 - 100;
  }

  void fill() {
    for (;;) {
      Client client(xcb_connect(server_.display().c_str(), nullptr), &xcb_disconnect);
      if (xcb_connection_has_error(client.get()) != 0) return;
      clients_.push_back(std::move(client));
    }
  }
  void makeRoom() { clients_.clear(); }

 private:
  using Client = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;
  std::vector<Client> clients_;
};

TEST_F(FullServer, TheCoverSaysInItsPlaceThatTheCaptureFailed) {
  auto& program = start(R"({"outline": false, "region": "{{200, 300}, {400, 200}}"})");
  fill();
  press(XK_d);
  EXPECT_TRUE(shows(saysSomething)) << program.process().output();
  EXPECT_EQ(program.countMessages("first live frame received"), 0U);
  press(XK_d);
  ASSERT_TRUE(program.waitForMessage("hide"));
  makeRoom();
  press(XK_d);
  EXPECT_TRUE(program.waitForMessage("first live frame received"));
  EXPECT_TRUE(shows([](const Picture& picture) {
    return picture.count(boardColor, storedArea) == std::size_t{400} * 200;
  })) << "the copy of what lies beneath, without any text";
}

}  // namespace
}  // namespace endtoend
