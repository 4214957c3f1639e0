#include <algorithm>
#include <utility>

#include "Quillfade/ProcessEntry.h"
#include "Tests/Mac/Contract/ContractDesktop.h"
#include "Tests/Mac/Fakes/World.h"
#include "Tests/Mac/Runtime/Dispatch.h"
#include "Tests/Mac/Runtime/Timers.h"

namespace contract {
namespace {

template <class To, class From>
To convert(const From& value) {
  return std::visit(
      [](const auto& held) -> To {
        if constexpr (std::is_constructible_v<To, decltype(held)>) return held;
        throw std::bad_variant_access();
      },
      value);
}

class FakedMac final : public Desktop {
 public:
  void arrangeScreens(const std::vector<platform::Screen>& screens) override {
    world_.screens.clear();
    world_.capture.displays.clear();
    for (const auto& screen : screens) {
      world_.screens.push_back({screen.frame, screen.displayID, screen.backingScaleFactor});
      if (screen.displayID) world_.capture.displays.push_back(*screen.displayID);
    }
    world_.mainScreen = screens.empty() ? std::nullopt : std::optional<std::size_t>{0};
  }
  void openWindows(const std::vector<platform::CaptureWindow>& windows) override {
    world_.capture.windows.clear();
    const double height = world_.screens.front().frame.height();
    for (const auto& window : windows) {
      const auto& [origin, size] = window.frame;
      world_.capture.windows.push_back(
          {.number = window.windowID,
           .layer = window.windowLayer,
           .frame = {{origin.x, height - origin.y - size.height}, size},
           .owner = window.owningApplication ? std::optional(window.owningApplication->bundleIdentifier) : std::nullopt,
           .isOnScreen = window.isOnScreen});
    }
  }
  void store(const std::string& key, const platform::SettingValue& value) override {
    world_.defaults.insert_or_assign(key, convert<fake::Default>(value));
  }
  void allowCapture(bool isAllowed, bool isGrantedOnRequest) override {
    world_.captureAllowed = isAllowed;
    world_.grantsOnRequest = isGrantedOnRequest;
  }
  void fail(Stage stage, std::optional<std::string> description) override {
    (stage == Stage::output ? world_.capture.outputFailure : answering(stage).failure) = std::move(description);
  }
  void hold(Stage stage, bool isHeld) override { answering(stage).isHeld = isHeld; }
  void answerHeld() override { world_.answerHeld(); }
  void takeKey(std::uint32_t code) override { world_.hotKeySetup.taken.insert(code); }
  void answerAlert(int response) override { world_.alertAnswers.push_back(response); }
  void refuseLoginItem(const std::string& description) override { world_.loginItemFailure = description; }
  void setEnvironment(const std::string& name, const std::string& value) override {
    world_.environment.insert_or_assign(name, value);
  }

  int run(const std::function<void()>& scene) override {
    int status = -1;
    world_.script = [this, &scene] {
      settle();
      scene();
      settle();
    };
    fake::inPool([&] {
      const auto platform = platform::makePlatform({});
      fake::inPool([&] { status = quillfade::runOnlyInstance(*platform); });
      settle();
    });
    settle();
    return status;
  }

  void use(const std::function<void(platform::Platform&)>& test) override {
    fake::inPool([&] {
      const auto platform = platform::makePlatform({});
      fake::inPool([&] { test(*platform); });
      settle();
    });
    settle();
  }

  void settle() override { fake::settle(); }
  void advance(double seconds) override { fake::advance(seconds); }
  void openMenu() override { world_.openMenu(); }
  void closeMenu() override { world_.closeMenu(); }
  void choose(const std::string& title) override {
    world_.choose(title);
    settle();
  }
  bool pressHotKey(std::uint32_t code) override {
    const bool isHandled = world_.pressHotKey(code, 6400);
    settle();
    return isHandled;
  }
  void setLocked(bool isLocked) override {
    world_.sessionSaysLocked = isLocked;
    world_.postFromLoginWindow(isLocked ? "com.apple.screenIsLocked" : "com.apple.screenIsUnlocked");
    settle();
  }
  void announceScreens() override {
    world_.changeScreens();
    settle();
  }
  void pressEscape() override {
    world_.pressKey(platform::escapeKeyCode);
    settle();
  }
  void drag(platform::Point from, platform::Point to) override {
    world_.mouseDown(from);
    world_.mouseDragged(to);
    world_.mouseUp(to);
    settle();
  }
  platform::RemoteReply command(const std::vector<std::string>& words) override {
    auto reply = platform::sendToRunningInstance(words, std::chrono::seconds{10}).value();
    settle();
    return reply;
  }
  void deliver(std::int64_t status) override {
    world_.deliver(newest(), {.number = ++frames_, .status = status});
    settle();
  }
  void endStream(const std::string& why) override {
    world_.endStream(newest(), why);
    settle();
  }

  [[nodiscard]] std::vector<Line> menu() const override {
    std::vector<Line> lines;
    for (const auto& line : world_.menu()) {
      lines.push_back(line.isSeparator ? Line{"-"} : Line{line.title, line.canBeChosen, line.state == 1});
    }
    return lines;
  }
  [[nodiscard]] std::string icon() const override { return world_.bar()->symbol; }
  [[nodiscard]] std::string toolTip() const override { return world_.bar()->toolTip; }
  [[nodiscard]] std::vector<platform::Rect> shownFrames() const override {
    std::vector<platform::Rect> frames;
    for (const auto& window : world_.windowsOnScreen()) frames.push_back(window.frame);
    return frames;
  }
  [[nodiscard]] std::string statusText() const override {
    const auto label = world_.windowsOnScreen().at(0).content.subviews.at(0);
    return label.isHidden ? "" : label.text;
  }
  [[nodiscard]] std::size_t framesShown() const override {
    return world_.windowsOnScreen().at(0).content.sublayers.at(0).frames.size();
  }
  [[nodiscard]] std::vector<Stream> streams() const override {
    std::vector<Stream> streams;
    for (const auto& look : world_.streams()) {
      streams.push_back({look.display, look.excluded, look.source, static_cast<std::int64_t>(look.width),
                         static_cast<std::int64_t>(look.height)});
    }
    return streams;
  }
  [[nodiscard]] std::size_t runningStreams() const override { return world_.runningStreams().size(); }
  [[nodiscard]] std::size_t timers() const override { return static_cast<std::size_t>(fake::liveTimers()); }
  [[nodiscard]] std::optional<platform::SettingValue> stored(const std::string& key) const override {
    const auto found = world_.defaults.find(key);
    if (found == world_.defaults.end()) return std::nullopt;
    return convert<platform::SettingValue>(found->second);
  }
  [[nodiscard]] std::vector<std::string> log() const override {
    return messagesIn(content("/Library/Logs/Quillfade.log").value_or(""));
  }
  [[nodiscard]] std::optional<std::string> content(const std::string& pathBelowHome) const override {
    const auto found = world_.files.contents.find(world_.home + pathBelowHome);
    return found == world_.files.contents.end() ? std::nullopt : std::optional(found->second);
  }
  [[nodiscard]] std::vector<std::string> alerts() const override {
    std::vector<std::string> texts;
    for (const auto& alert : world_.alerts) texts.push_back(alert.message + '\n' + alert.information);
    return texts;
  }
  [[nodiscard]] std::vector<std::string> aboutPanels() const override {
    std::vector<std::string> names;
    for (const auto& panel : world_.aboutPanels) names.push_back(panel.name);
    return names;
  }
  [[nodiscard]] std::vector<std::string> openedLinks() const override { return world_.openedLinks; }
  [[nodiscard]] bool isTerminated() const override { return world_.isTerminated; }

 private:
  [[nodiscard]] fake::Answering& answering(Stage stage) {
    if (stage == Stage::content) return world_.capture.content;
    return stage == Stage::start ? world_.capture.start : world_.capture.stop;
  }
  [[nodiscard]] int newest() const { return world_.streams().back().number; }

  mutable fake::World world_;
  int frames_ = 0;
};

}  // namespace

std::unique_ptr<Desktop> makeFakedMac() { return std::make_unique<FakedMac>(); }

}  // namespace contract
