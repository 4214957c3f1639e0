#include "Platform/Linux/Toolkit/TextCatalogue.h"

#include <gtest/gtest.h>

namespace platform::linux::toolkit {
namespace {

TEST(TextCatalogue, TheFirstLanguageWithATranslationIsUsed) {
  EXPECT_EQ(TextCatalogue({"de-AT"}).translated("Hide Annotations"), "Anmerkungen verbergen");
  EXPECT_EQ(TextCatalogue({"xx", "de"}).translated("Hide Annotations"), "Anmerkungen verbergen");
  EXPECT_EQ(TextCatalogue({"en-GB", "de"}).translated("Hide Annotations"), "Hide Annotations");
  EXPECT_EQ(TextCatalogue({"xx"}).translated("Hide Annotations"), "Hide Annotations");
  EXPECT_EQ(TextCatalogue({}).translated("Hide Annotations"), "Hide Annotations");
}

TEST(TextCatalogue, ATextWithoutATranslationStaysAsItIs) {
  EXPECT_EQ(TextCatalogue({"de"}).translated("No such text"), "No such text");
}

}  // namespace
}  // namespace platform::linux::toolkit
