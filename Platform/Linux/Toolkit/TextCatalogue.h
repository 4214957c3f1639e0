// Translations as JSON objects, one a language, in the program's resources: English texts and what they become.
//
// Threads: main thread only.
#pragma once

#include <QJsonObject>
#include <QStringList>

#include "Platform/Texts.h"

namespace platform::linux::toolkit {

class TextCatalogue final : public Texts {
 public:
  // The first of the languages that there is a translation into; English needs none. `languages` are as in "de-AT",
  // the most welcome first.
  explicit TextCatalogue(const QStringList& languages);

  [[nodiscard]] std::string translated(std::string_view english) const override;

 private:
  QJsonObject texts_;
};

// The languages that the user's environment names.
[[nodiscard]] QStringList userLanguages();

}  // namespace platform::linux::toolkit
