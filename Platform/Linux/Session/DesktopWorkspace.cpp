#include "Platform/Linux/Session/DesktopWorkspace.h"

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "Platform/Linux/Posix/UserDirectories.h"
#include "Platform/Linux/Session/SettingsPrograms.h"
#include "Platform/Linux/Toolkit/OffTaskLists.h"
#include "Platform/Linux/Toolkit/ShallowScreen.h"
#include "Platform/Linux/Toolkit/WindowActivation.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::session {

namespace {

bool start(const std::vector<std::string>& command) {
  const QString program = QStandardPaths::findExecutable(QString::fromStdString(command.front()));
  if (program.isEmpty()) return false;
  QStringList arguments;
  for (std::size_t i = 1; i < command.size(); ++i) arguments << QString::fromStdString(command[i]);
  return QProcess::startDetached(program, arguments);
}

bool startSettings() {
  return std::ranges::any_of(settingsPrograms(posix::environmentVariable("XDG_CURRENT_DESKTOP").value_or("")), start);
}

}  // namespace

std::string explanationOf(const std::vector<std::string>& missingExtensions) {
  if (missingExtensions.empty())
    return "No settings program was found on this desktop. This display has everything that the live view "
           "needs.";
  const bool isOne = missingExtensions.size() == 1;
  return "The live view needs the X extension" + std::string(isOne ? " " : "s ") + xcb::enumerated(missingExtensions) +
         ", which this display lacks. Enable " + (isOne ? "it" : "them") +
         " in the X server's configuration, or log in to a session on an X.Org server.";
}

DesktopWorkspace::DesktopWorkspace(std::vector<std::string> missingExtensions)
    : missingExtensions_(std::move(missingExtensions)) {}

DesktopWorkspace::~DesktopWorkspace() { delete explanation_.data(); }

void DesktopWorkspace::openURL(const std::string& url) {
  const QUrl link(QString::fromStdString(url));
  if (link.scheme() == QLatin1String("x-apple.systempreferences"))
    openSettings();
  else
    QDesktopServices::openUrl(link);
}

// No settings program says which extension the display lacks.
void DesktopWorkspace::openSettings() {
  const bool isOpen = startSettings();
  if (!isOpen || !missingExtensions_.empty()) explain();
}

void DesktopWorkspace::explain() {
  if (!explanation_) {
    explanation_ = new QMessageBox(QMessageBox::Information, {},
                                   QString::fromStdString(explanationOf(missingExtensions_)), QMessageBox::Ok);
    explanation_->setTextFormat(Qt::PlainText);
    explanation_->setAccessibleName(explanation_->text());
    explanation_->setWindowFlags(toolkit::dialogFlags);
    explanation_->setAttribute(Qt::WA_DeleteOnClose);
    explanation_->setModal(false);
    toolkit::paintOnShallowScreen(*explanation_);
  }
  explanation_->show();
  toolkit::bringToFront(*explanation_);
}

}  // namespace platform::linux::session
