// Translations in the program's resources, one JSON object per language: English texts and their translations.
//
// Threads: main thread only.
#pragma once

#include <QJsonObject>
#include <QStringList>

#include "Platform/Texts.h"

namespace platform::linux::toolkit {

class TextCatalogue final : public Texts {
 public:
  // Uses the first of the languages that has a translation; English needs none. `languages` are as in "de-AT", most
  // preferred first.
  explicit TextCatalogue(const QStringList& languages);

  [[nodiscard]] std::string translated(std::string_view english) const override;

 private:
  QJsonObject texts_;
};

// The languages named by the user's environment.
[[nodiscard]] QStringList userLanguages();

}  // namespace platform::linux::toolkit
