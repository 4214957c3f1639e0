#include "Platform/Linux/Widgets/AboutDialog.h"

#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

#include "Platform/Linux/Toolkit/OffTaskLists.h"
#include "Platform/Linux/Toolkit/TextAndColors.h"

namespace platform::linux::widgets {

namespace {

constexpr int iconSize = 64;
constexpr int creditsWidth = 360;

QLabel* addText(QVBoxLayout& layout, const QString& text, const Font& font) {
  auto* label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setFont(toolkit::toQFont(font));
  label->setAlignment(Qt::AlignHCenter);
  label->setWordWrap(true);
  label->setFixedWidth(creditsWidth);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  layout.addWidget(label, 0, Qt::AlignHCenter);
  return label;
}

void color(QLabel& label, const Color& ink) {
  QPalette palette = label.palette();
  palette.setColor(QPalette::WindowText, toolkit::toQColor(ink));
  label.setPalette(palette);
}

QString versionText(const AboutPanel& panel) {
  QString text = QStringLiteral("Version ") + QString::fromStdString(panel.applicationVersion);
  if (panel.version != panel.applicationVersion)
    text += QStringLiteral(" (") + QString::fromStdString(panel.version) + QLatin1Char(')');
  return text;
}

}  // namespace

std::unique_ptr<QDialog> makeAboutDialog(const AboutPanel& panel) {
  auto dialog = std::make_unique<QDialog>(nullptr, toolkit::dialogFlags);
  dialog->setWindowTitle(QStringLiteral("About ") + QString::fromStdString(panel.applicationName));
  auto* layout = new QVBoxLayout(dialog.get());
  layout->setContentsMargins(24, 20, 24, 24);
  layout->setSpacing(10);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  auto* icon = new QLabel;
  icon->setPixmap(QApplication::windowIcon().pixmap(iconSize));
  icon->setAccessibleName(QString::fromStdString(panel.applicationName));
  layout->addWidget(icon, 0, Qt::AlignHCenter);
  addText(*layout, QString::fromStdString(panel.applicationName), {.size = 16, .weight = FontWeight::semibold});
  color(*addText(*layout, versionText(panel), {.size = 11}), colors::secondaryLabel);
  color(*addText(*layout, QString::fromStdString(panel.credits), {.size = panel.creditsFontSize}), panel.creditsColor);
  return dialog;
}

}  // namespace platform::linux::widgets
