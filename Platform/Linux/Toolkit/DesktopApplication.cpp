#include "Platform/Linux/Toolkit/DesktopApplication.h"

#include <QEvent>
#include <QIcon>
#include <QTimer>
#include <QWidget>

#include "Platform/Linux/Toolkit/DesktopProcess.h"
#include "Platform/Linux/Toolkit/WindowActivation.h"

namespace platform::linux::toolkit {

namespace {

// In a Wayland session with an X server beside it, this adapter talks to the X server.
void preferX11() {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && qEnvironmentVariableIsSet("DISPLAY"))
    qputenv("QT_QPA_PLATFORM", "xcb");
}

// Others, such as a session manager, may ask the program to end. Qt would close all windows first, and an alert would
// take that for an answer.
class EndOnWish : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() != QEvent::Quit) return false;
    QCoreApplication::exit();
    return true;
  }
};

}  // namespace

DesktopApplication::DesktopApplication(std::span<char* const> arguments)
    : arguments_(arguments.begin(), arguments.end()), argumentCount_(static_cast<int>(arguments.size())) {
  arguments_.push_back(nullptr);
  preferX11();
  application_.emplace(argumentCount_, arguments_.data());
  QApplication::setApplicationName(QStringLiteral("quillfade"));
  QApplication::setApplicationDisplayName(QStringLiteral("Quillfade"));
  QGuiApplication::setDesktopFileName(QString::fromLatin1(posix::applicationIdentifier));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/org.quillfade.Quillfade.svg")));
  QApplication::setQuitOnLastWindowClosed(false);
  application_->installEventFilter(new EndOnWish(&*application_));
  signals_.emplace([this] { terminate(); });
}

void DesktopApplication::setActivationPolicy(ActivationPolicy policy) {
  if (policy == ActivationPolicy::regular)
    offTaskLists_.reset();
  else if (!offTaskLists_)
    offTaskLists_.emplace();
}

void DesktopApplication::run() {
  QTimer::singleShot(0, &*application_, [this] {
    if (const auto delegate = delegate_.lock()) delegate->applicationDidFinishLaunching();
  });
  QApplication::exec();
}

void DesktopApplication::activateIgnoringOtherApps() {
  for (QWidget* widget : QApplication::topLevelWidgets())
    if (widget->isVisible() && widget->windowType() == Qt::Dialog) bringToFront(*widget);
}

// Not `quit`, which closes all windows first.
void DesktopApplication::terminate() { QCoreApplication::exit(); }

}  // namespace platform::linux::toolkit
