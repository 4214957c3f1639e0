#include "Platform/Linux/Widgets/DesktopDialogs.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <cstdlib>
#include <utility>

#include "Platform/Linux/Toolkit/OffTaskLists.h"
#include "Platform/Linux/Toolkit/ShallowScreen.h"
#include "Platform/Linux/Toolkit/WindowActivation.h"
#include "Platform/Linux/Widgets/AboutDialog.h"

namespace platform::linux::widgets {

namespace {

void setTexts(QMessageBox& box, const Alert& alert) {
  box.setTextFormat(Qt::PlainText);
  box.setText(QString::fromStdString(alert.messageText));
  box.setInformativeText(QString::fromStdString(alert.informativeText));
  // The box has no title for a screen reader to say.
  box.setAccessibleName(QString::fromStdString(alert.messageText));
  box.setAccessibleDescription(QString::fromStdString(alert.informativeText));
  // The box passes its text format on to the first of its two labels only.
  for (QLabel* label : box.findChildren<QLabel*>())
    if (label->textFormat() == Qt::AutoText) label->setTextFormat(Qt::PlainText);
}

std::vector<QPushButton*> addButtons(QMessageBox& box, const Alert& alert) {
  // Desktops arrange buttons by role, each in its own way. This layout and one role for all keep the given order.
  box.setStyleSheet(QStringLiteral("QDialogButtonBox { button-layout: 0 }"));
  std::vector<QPushButton*> buttons;
  for (const std::string& title : alert.buttons)
    buttons.push_back(box.addButton(QString::fromStdString(title), QMessageBox::ActionRole));
  if (buttons.empty()) buttons.push_back(box.addButton(QMessageBox::Ok));
  box.setDefaultButton(buttons.front());
  box.setEscapeButton(buttons.back());
  return buttons;
}

}  // namespace

DesktopDialogs::~DesktopDialogs() { delete about_.data(); }

int DesktopDialogs::runModal(const Alert& alert) {
  QMessageBox box(QMessageBox::Warning, {}, {});
  box.setWindowFlags(toolkit::dialogFlags);
  setTexts(box, alert);
  const std::vector<QPushButton*> buttons = addButtons(box, alert);
  toolkit::paintOnShallowScreen(box);
  QTimer::singleShot(0, &box, [&box] { toolkit::bringToFront(box); });
  bool isAnswered = false;
  QObject::connect(&box, &QDialog::finished, &box, [&isAnswered] { isAnswered = true; });
  box.exec();
  if (!isAnswered) std::quick_exit(EXIT_SUCCESS);
  const QAbstractButton* clicked = box.clickedButton();
  for (std::size_t i = 0; i < buttons.size(); ++i)
    if (buttons[i] == clicked) return alertFirstButtonReturn + static_cast<int>(i);
  return alertFirstButtonReturn + static_cast<int>(buttons.size()) - 1;
}

void DesktopDialogs::orderFrontAboutPanel(const AboutPanel& panel) {
  if (!about_) {
    about_ = makeAboutDialog(panel).release();
    toolkit::paintOnShallowScreen(*about_);
    about_->setAttribute(Qt::WA_DeleteOnClose);
  }
  about_->show();
  toolkit::bringToFront(*about_);
}

}  // namespace platform::linux::widgets
