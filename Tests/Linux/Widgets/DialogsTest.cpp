#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "Platform/Linux/Session/DesktopWorkspace.h"
#include "Platform/Linux/Session/SettingsPrograms.h"
#include "Platform/Linux/Toolkit/QtRunLoop.h"
#include "Platform/Linux/Toolkit/TextAndColors.h"
#include "Platform/Linux/Widgets/DesktopDialogs.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"
#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/Variable.h"

using namespace platform;
using namespace platform::linux;
using namespace platform::linux::widgets;

namespace {

const Alert permission{
    "Permission <b>needed</b>", "First <i>paragraph</i>.\n\nSecond.", {"Open Settings", "Use Cover"}};

class DialogsTest : public qt::Test {
 protected:
  // Answers the alert from inside its own loop, once it is open.
  template <typename Action>
  int answer(const Alert& alert, Action action) {
    const auto timer = runLoop.every(0.005, [&] {
      if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) action(*box);
    });
    const int response = dialogs.runModal(alert);
    timer->invalidate();
    return response;
  }
  static std::vector<QPushButton*> buttonsFromLeft(const QMessageBox& box) {
    auto list = box.findChildren<QPushButton*>();
    std::vector<QPushButton*> buttons(list.begin(), list.end());
    std::ranges::sort(buttons, {}, [](QPushButton* button) { return button->mapToGlobal(QPoint()).x(); });
    return buttons;
  }
  static QDialog* visibleDialog() {
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (auto* dialog = qobject_cast<QDialog*>(widget); dialog && dialog->isVisible()) return dialog;
    return nullptr;
  }

  toolkit::QtRunLoop runLoop;
  DesktopDialogs dialogs;
};

}  // namespace

TEST_F(DialogsTest, AScreenReaderHearsWhatAnAlertSaysAndWhatItsButtonsAreCalled) {
  answer(permission, [](QMessageBox& box) {
    const auto* alert = QAccessible::queryAccessibleInterface(&box);
    EXPECT_TRUE(alert->role() == QAccessible::Dialog || alert->role() == QAccessible::AlertMessage) << alert->role();
    EXPECT_EQ(alert->text(QAccessible::Name).toStdString(), permission.messageText);
    EXPECT_EQ(alert->text(QAccessible::Description).toStdString(), permission.informativeText);
    for (QPushButton* button : buttonsFromLeft(box)) {
      const auto* spoken = QAccessible::queryAccessibleInterface(button);
      EXPECT_EQ(spoken->role(), QAccessible::Button);
      EXPECT_EQ(spoken->text(QAccessible::Name), button->text());
      EXPECT_TRUE(spoken->state().focusable) << "The keyboard reaches every button.";
    }
    buttonsFromLeft(box).at(0)->click();
  });
}

TEST_F(DialogsTest, AScreenReaderHearsEverythingInTheAboutPanel) {
  dialogs.orderFrontAboutPanel({"Quillfade", "1.1", "1.1", "Credits.", 11, colors::secondaryLabel});
  QDialog* panel = visibleDialog();
  ASSERT_NE(panel, nullptr);
  EXPECT_EQ(QAccessible::queryAccessibleInterface(panel)->text(QAccessible::Name), "About Quillfade");
  for (QLabel* label : panel->findChildren<QLabel*>()) {
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name).isEmpty());
  }
  panel->close();
  qt::runPending();
}

TEST_F(DialogsTest, AnAlertAnswersWithTheNumberOfTheButton) {
  EXPECT_EQ(answer(permission, [](QMessageBox& box) { buttonsFromLeft(box).at(0)->click(); }), 1000);
  EXPECT_EQ(answer(permission, [](QMessageBox& box) { buttonsFromLeft(box).at(1)->click(); }), 1001);
}

TEST_F(DialogsTest, TheButtonsKeepTheirOrderAndTheFirstIsTheDefault) {
  Alert three = permission;
  three.buttons = {"One", "Two", "Three"};
  std::vector<std::string> titles;
  bool firstIsDefault = false;
  answer(three, [&](QMessageBox& box) {
    titles.clear();
    for (const QPushButton* button : buttonsFromLeft(box)) titles.push_back(button->text().toStdString());
    firstIsDefault = buttonsFromLeft(box).at(0)->isDefault();
    box.close();
  });
  EXPECT_EQ(titles, three.buttons);
  EXPECT_TRUE(firstIsDefault);
}

TEST_F(DialogsTest, AClosedAlertAnswersAsItsLastButton) {
  EXPECT_EQ(answer(permission, [](QMessageBox& box) { box.close(); }), 1001);
  EXPECT_EQ(answer({"Could not", "Why.", {"OK"}}, [](QMessageBox& box) { box.reject(); }), 1000);
}

TEST_F(DialogsTest, TextsAreShownAsTheyAreWrittenAboveOtherWindows) {
  bool plain = true;
  bool onTop = false;
  answer(permission, [&](QMessageBox& box) {
    EXPECT_EQ(box.text().toStdString(), permission.messageText);
    EXPECT_EQ(box.informativeText().toStdString(), permission.informativeText);
    for (const QLabel* label : box.findChildren<QLabel*>())
      if (!label->text().isEmpty()) plain = plain && label->textFormat() == Qt::PlainText;
    onTop = box.windowFlags().testFlag(Qt::WindowStaysOnTopHint);
    box.close();
  });
  EXPECT_TRUE(plain);
  EXPECT_TRUE(onTop);
}

TEST_F(DialogsTest, PostedWorkAndTimersGoOnWhileAnAlertIsUp) {
  int work = 0;
  answer(permission, [&](QMessageBox& box) {
    runLoop.post([&] { ++work; });
    if (work >= 3) box.close();
  });
  EXPECT_GE(work, 3);
}

TEST_F(DialogsTest, AnAlertThatTheEndOfTheProcessInterruptsNeverAnswers) {
  // In a child process, since it ends there: with status 0, and before anything could be done with an answer.
  if (std::getenv("QUILLFADE_TEST_ENDS_HERE")) {
    answer(permission, [](QMessageBox&) { qt::application().terminate(); });
    std::quick_exit(3);
  }
  support::ChildProcess child({std::filesystem::read_symlink("/proc/self/exe").string(),
                               "--gtest_filter=DialogsTest.AnAlertThatTheEndOfTheProcessInterruptsNeverAnswers"},
                              {{"QUILLFADE_TEST_ENDS_HERE", "1"}});
  EXPECT_EQ(child.waitForExit(), 0) << child.output();
}

TEST_F(DialogsTest, ThereIsOneAboutPanelAndEscapeClosesIt) {
  const AboutPanel panel{"Quillfade", "1.1", "1.1", "First.\n\nSecond.", 11, colors::secondaryLabel};
  dialogs.orderFrontAboutPanel(panel);
  QDialog* dialog = visibleDialog();
  ASSERT_NE(dialog, nullptr);
  dialogs.orderFrontAboutPanel(panel);
  EXPECT_EQ(visibleDialog(), dialog);
  QLabel* credits = nullptr;
  for (QLabel* label : dialog->findChildren<QLabel*>())
    if (label->text() == QStringLiteral("First.\n\nSecond.")) credits = label;
  ASSERT_NE(credits, nullptr);
  EXPECT_EQ(credits->font().pixelSize(), 11);
  EXPECT_EQ(credits->palette().color(QPalette::WindowText), toolkit::toQColor(colors::secondaryLabel));
  EXPECT_TRUE(credits->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));

  // No window manager gives windows the keyboard here, so this key comes from Qt's side.
  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QCoreApplication::sendEvent(dialog, &escape);
  EXPECT_TRUE(qt::runUntil([] { return visibleDialog() == nullptr; }));
  dialogs.orderFrontAboutPanel(panel);
  EXPECT_NE(visibleDialog(), nullptr);
}

TEST_F(DialogsTest, OnADesktopThatReadsFromRightToLeftNothingIsCutOffOrCoveredUp) {
  QApplication::setLayoutDirection(Qt::RightToLeft);
  dialogs.orderFrontAboutPanel({"Quillfade", "1.1", "1.1", "First.\n\nSecond.", 11, colors::secondaryLabel});
  const QDialog* panel = visibleDialog();
  ASSERT_NE(panel, nullptr);
  const auto labels = panel->findChildren<QLabel*>();
  EXPECT_EQ(labels.size(), 4);
  for (const QLabel* label : labels) {
    EXPECT_TRUE(panel->rect().contains(label->geometry())) << label->text().toStdString();
    EXPECT_GE(label->width(), label->minimumSizeHint().width()) << label->text().toStdString();
    for (const QLabel* other : labels) EXPECT_TRUE(label == other || !label->geometry().intersects(other->geometry()));
  }
  // No button is lost, and each still gives its own answer.
  const int response = answer(permission, [](QMessageBox& box) {
    const auto buttons = buttonsFromLeft(box);
    ASSERT_EQ(buttons.size(), 2U);
    EXPECT_TRUE(box.rect().contains(buttons.front()->geometry().united(buttons.back()->geometry())));
    for (QPushButton* button : buttons)
      if (button->text().toStdString() == permission.buttons.back()) button->click();
  });
  QApplication::setLayoutDirection(Qt::LeftToRight);
  EXPECT_EQ(response, alertFirstButtonReturn + 1);
}

TEST_F(DialogsTest, NothingMoves) {
  for (const Qt::UIEffect effect : {Qt::UI_AnimateMenu, Qt::UI_FadeMenu, Qt::UI_AnimateCombo, Qt::UI_AnimateTooltip,
                                    Qt::UI_FadeTooltip, Qt::UI_AnimateToolBox})
    EXPECT_FALSE(QApplication::isEffectEnabled(effect)) << effect;
}

TEST(SettingsPrograms, ThoseOfTheRunningDesktopComeFirst) {
  EXPECT_EQ(session::settingsPrograms("ubuntu:GNOME").front(),
            (std::vector<std::string>{"gnome-control-center", "privacy"}));
  EXPECT_EQ(session::settingsPrograms("XFCE").front(), (std::vector<std::string>{"xfce4-settings-manager"}));
  EXPECT_EQ(session::settingsPrograms("KDE").at(1), (std::vector<std::string>{"systemsettings5"}));
  EXPECT_EQ(session::settingsPrograms("").size(), session::settingsPrograms("KDE").size());
}

TEST_F(DialogsTest, TheUserIsToldWhatTheDisplayLacksWithAndWithoutASettingsProgram) {
  const support::TemporaryDirectory programs;
  const auto program = programs.path() / "lxqt-config";
  support::writeFile(program, "#!/bin/sh\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  for (const auto& place : {std::filesystem::path("/nonexistent"), programs.path()}) {
    const support::Variable path("PATH", place.c_str());
    session::DesktopWorkspace workspace({"Composite", "DAMAGE"});
    workspace.openURL("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture");
    const auto* box = qobject_cast<QMessageBox*>(visibleDialog());
    ASSERT_NE(box, nullptr) << place;
    EXPECT_EQ(box->text().toStdString(),
              "The live view needs the X extensions Composite and DAMAGE, which this display lacks. Enable them in "
              "the X server's configuration, or log in to a session on an X.Org server.");
  }
}
