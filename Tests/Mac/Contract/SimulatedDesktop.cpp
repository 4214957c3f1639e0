#include <algorithm>
#include <stdexcept>
#include <utility>

#include "Platform/Simulated/Desktop.h"
#include "Quillfade/ProcessEntry.h"
#include "Tests/Mac/Contract/ContractDesktop.h"

namespace contract {
namespace {

namespace simulated = platform::simulated;

class SimulatedDesktop final : public Desktop {
 public:
  SimulatedDesktop() { desktop_.files().makeDirectory("/home/presenter/Library/Logs"); }

  void arrangeScreens(const std::vector<platform::Screen>& screens) override { desktop_.arrangeScreens(screens); }
  void openWindows(const std::vector<platform::CaptureWindow>& windows) override {
    desktop_.capture().content.windows = windows;
  }
  void store(const std::string& key, const platform::SettingValue& value) override {
    desktop_.settings().values.insert_or_assign(key, value);
  }
  void allowCapture(bool isAllowed, bool isGrantedOnRequest) override {
    desktop_.screenCaptureAccess().isGranted = isAllowed;
    desktop_.screenCaptureAccess().grantsOnRequest = isGrantedOnRequest;
  }
  void fail(Stage stage, std::optional<std::string> description) override {
    (stage == Stage::output ? desktop_.capture().addOutputFailure : answering(stage).failure) = std::move(description);
  }
  void hold(Stage stage, bool isHeld) override { answering(stage).isHeld = isHeld; }
  void answerHeld() override {
    auto& capture = desktop_.capture();
    for (const auto& request : std::vector(capture.contentRequests())) {
      if (request.request->isPending()) request.request->answer(capture.content);
    }
    for (const auto& stream : std::vector(capture.streams())) {
      for (const auto& request : {stream->startRequest(), stream->stopRequest()}) {
        if (request && request->isPending()) request->answer({});
      }
    }
  }
  void takeKey(std::uint32_t code) override { desktop_.hotKeys().takenKeyCodes.insert(code); }
  void answerAlert(int response) override { desktop_.dialogs().answerWith(response); }
  void refuseLoginItem(const std::string& description) override { desktop_.loginItem().failure = description; }
  void setEnvironment(const std::string& name, const std::string& value) override {
    desktop_.process().environment.insert_or_assign(name, value);
  }

  int run(const std::function<void()>& scene) override {
    desktop_.sharedApplication()->setSession([this, &scene] {
      settle();
      scene();
      settle();
    });
    const int status = quillfade::runOnlyInstance(desktop_);
    settle();
    return status;
  }

  void use(const std::function<void(platform::Platform&)>& test) override {
    test(desktop_);
    settle();
  }

  void settle() override { desktop_.runLoop().settle(); }
  void advance(double seconds) override {
    desktop_.runLoop().advance(seconds);
    settle();
  }
  void openMenu() override { menuOfBar().open(); }
  void closeMenu() override { menuOfBar().close(); }
  void choose(const std::string& title) override {
    if (!menuOfBar().choose(title)) throw std::logic_error("cannot be chosen: " + title);
    settle();
  }
  bool pressHotKey(std::uint32_t code) override {
    const bool isHandled = desktop_.hotKeys().press(code, 6400).has_value();
    settle();
    return isHandled;
  }
  void setLocked(bool isLocked) override {
    desktop_.sessionLock().setLocked(isLocked);
    settle();
  }
  void announceScreens() override {
    desktop_.screens().notifyChange();
    settle();
  }
  void pressEscape() override {
    desktop_.windows().pressKey({platform::escapeKeyCode});
    settle();
  }
  void drag(platform::Point from, platform::Point to) override {
    const auto window = desktop_.windows().clickTarget(from);
    if (!window) throw std::logic_error("the drag reaches another application");
    const auto responder = window->contentView->responder();
    const auto inWindow = [&](platform::Point at) {
      return platform::Point{at.x - window->frame.origin.x, at.y - window->frame.origin.y};
    };
    responder->mouseDown(inWindow(from));
    responder->mouseDragged(inWindow(to));
    responder->mouseUp(inWindow(to));
    settle();
  }
  platform::RemoteReply command(const std::vector<std::string>& words) override {
    desktop_.remoteControl().send(words);
    settle();
    return desktop_.remoteControl().replies().back();
  }
  void deliver(std::int64_t status) override {
    desktop_.capture().streams().back()->deliver(simulated::frameWithStatus(status));
    settle();
  }
  void endStream(const std::string& why) override {
    desktop_.capture().streams().back()->stopWithError(why);
    settle();
  }

  [[nodiscard]] std::vector<Line> menu() const override {
    std::vector<Line> lines;
    for (const auto& item : menuOfBar().items()) {
      if (item.isSeparator) {
        lines.push_back({"-"});
      } else {
        lines.push_back({item.title, simulated::Menu::isEnabled(item), item.state == platform::ControlState::on});
      }
    }
    return lines;
  }
  [[nodiscard]] std::string icon() const override { return button().shownImage()->name(); }
  [[nodiscard]] std::string toolTip() const override { return button().toolTip(); }
  [[nodiscard]] std::vector<platform::Rect> shownFrames() const override {
    std::vector<platform::Rect> frames;
    for (const auto& window : desktop_.windows().onScreen()) frames.push_back(window->frame);
    return frames;
  }
  [[nodiscard]] std::string statusText() const override {
    const auto& label = *picture().subviews().at(0);
    return label.isHidden() ? "" : label.text().value_or("");
  }
  [[nodiscard]] std::size_t framesShown() const override {
    return picture().sublayers().at(0)->sampleBufferRenderer().enqueued().size();
  }
  [[nodiscard]] std::vector<Stream> streams() const override {
    std::vector<Stream> streams;
    for (const auto& stream : desktop_.capture().streams()) {
      const auto& configuration = stream->configuration();
      const auto& source = configuration.sourceRect;
      Stream seen{.display = stream->filter().display.displayID,
                  .source = {{source.x, source.y}, {source.width, source.height}},
                  .width = configuration.width,
                  .height = configuration.height};
      for (const auto& window : stream->filter().excludingWindows) seen.excluded.push_back(window.windowID);
      streams.push_back(seen);
    }
    return streams;
  }
  [[nodiscard]] std::size_t runningStreams() const override { return desktop_.capture().runningStreams().size(); }
  [[nodiscard]] std::size_t timers() const override { return desktop_.runLoop().liveTimers().size(); }
  [[nodiscard]] std::optional<platform::SettingValue> stored(const std::string& key) const override {
    const auto found = desktop_.settings().values.find(key);
    return found == desktop_.settings().values.end() ? std::nullopt : std::optional(found->second);
  }
  [[nodiscard]] std::vector<std::string> log() const override {
    return messagesIn(content("/Library/Logs/Quillfade.log").value_or(""));
  }
  [[nodiscard]] std::optional<std::string> content(const std::string& pathBelowHome) const override {
    return desktop_.files().content(desktop_.process().homeDirectory() + pathBelowHome);
  }
  [[nodiscard]] std::vector<std::string> alerts() const override {
    std::vector<std::string> texts;
    for (const auto& alert : desktop_.dialogs().alerts())
      texts.push_back(alert.messageText + '\n' + alert.informativeText);
    return texts;
  }
  [[nodiscard]] std::vector<std::string> aboutPanels() const override {
    std::vector<std::string> names;
    for (const auto& panel : desktop_.dialogs().aboutPanels()) names.push_back(panel.applicationName);
    return names;
  }
  [[nodiscard]] std::vector<std::string> openedLinks() const override { return desktop_.workspace().openedURLs(); }
  [[nodiscard]] bool isTerminated() const override { return desktop_.sharedApplication()->isTerminated(); }

 private:
  [[nodiscard]] simulated::Answering& answering(Stage stage) {
    auto& capture = desktop_.capture();
    if (stage == Stage::content) return capture.contentAnswering;
    return stage == Stage::start ? capture.startAnswering : capture.stopAnswering;
  }
  [[nodiscard]] simulated::Menu& menuOfBar() const { return *desktop_.statusBar().items().back()->shownMenu(); }
  [[nodiscard]] simulated::StatusButton& button() const { return *desktop_.statusBar().items().back()->button(); }
  [[nodiscard]] const simulated::View& picture() const { return *desktop_.windows().onScreen().at(0)->contentView; }

  mutable simulated::Desktop desktop_;
};

}  // namespace

std::unique_ptr<Desktop> makeSimulatedDesktop() { return std::make_unique<SimulatedDesktop>(); }

std::vector<std::string> messagesIn(const std::string& log) {
  constexpr std::string_view stamp = "[2026-11-15 23:56:39 +0000] ";
  std::vector<std::string> messages;
  for (std::size_t begin = 0; begin < log.size();) {
    const std::size_t end = std::min(log.find('\n', begin), log.size());
    messages.push_back(log.substr(begin + stamp.size(), end - begin - stamp.size()));
    begin = end + 1;
  }
  return messages;
}

}  // namespace contract
