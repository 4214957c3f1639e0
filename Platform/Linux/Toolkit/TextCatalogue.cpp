#include "Platform/Linux/Toolkit/TextCatalogue.h"

#include <QFile>
#include <QJsonDocument>
#include <QLocale>

namespace platform::linux::toolkit {

TextCatalogue::TextCatalogue(const QStringList& languages) {
  for (const QString& language : languages) {
    const QString name = language.section('-', 0, 0).section('_', 0, 0);
    if (name == QStringLiteral("en")) return;
    QFile file(QStringLiteral(":/translations/%1.json").arg(name));
    if (!file.open(QIODevice::ReadOnly)) continue;
    texts_ = QJsonDocument::fromJson(file.readAll()).object();
    return;
  }
}

std::string TextCatalogue::translated(std::string_view english) const {
  const auto found = texts_.find(QString::fromUtf8(english.data(), static_cast<qsizetype>(english.size())));
  return found == texts_.end() ? std::string{english} : found->toString().toStdString();
}

QStringList userLanguages() { return QLocale::system().uiLanguages(); }

}  // namespace platform::linux::toolkit
