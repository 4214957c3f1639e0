#include "Quillfade/Keys/KeyCombination.h"

#include <gtest/gtest.h>

#include <set>

#include "Quillfade/Keys/HotKeyTable.h"

namespace quillfade {
namespace {

std::string complaint(const std::string& text) {
  const auto parsed = parseCombination(text);
  return parsed ? "(understood)" : parsed.error();
}

TEST(KeyCombination, TheBuiltInKeysAreWrittenAsTheDocumentsWriteThem) {
  EXPECT_EQ(combinationText(builtInHotKeys[0].combination), "Control+Alt+Super+D");
  EXPECT_EQ(combinationText(builtInHotKeys[1].combination), "Control+Alt+Super+P");
  EXPECT_EQ(combinationText(builtInHotKeys[2].combination), "Control+Alt+Super+A");
  EXPECT_EQ(combinationText(builtInHotKeys[3].combination), "Control+Alt+Super+F");
}

TEST(KeyCombination, WhatIsWrittenReadsBack) {
  for (const std::uint32_t key : {0x00U, 0x0FU, 0x12U, 0x1DU, 0x24U, 0x31U, 0x35U, 0x60U, 0x7AU, 0x7EU}) {
    const KeyCombination combination{key, builtInModifiers};
    EXPECT_EQ(parseCombination(combinationText(combination)), combination) << key;
  }
  EXPECT_EQ(parseCombination("Control+F12")->keyCode, 0x6FU);
  EXPECT_EQ(combinationText(*parseCombination("Control+F12")), "Control+F12");
}

TEST(KeyCombination, AKeyWithoutANameIsWrittenAsItsNumber) {
  EXPECT_EQ(combinationText({0xF0, builtInModifiers}), "Control+Alt+Super+240");
}

TEST(KeyCombination, NamesIgnoreCaseAndModifiersComeInAnyOrderAndByTheirOtherNames) {
  const auto expected = parseCombination("Control+Alt+Super+D");
  EXPECT_EQ(parseCombination("super+alt+control+d"), expected);
  EXPECT_EQ(parseCombination("Ctrl+Option+Command+D"), expected);
  EXPECT_EQ(parseCombination("CTRL+ALT+META+D"), expected);
}

TEST(KeyCombination, AnythingElseIsRefusedWithASentence) {
  EXPECT_EQ(complaint("Control+Alt+Nose"), "There is no key \"Nose\".");
  EXPECT_EQ(complaint(""), "There is no key \"\".");
  EXPECT_EQ(complaint("Control+"), "There is no key \"\".");
  EXPECT_EQ(complaint("Shift+D"), "\"Shift\" is not Control, Alt or Super.");
  EXPECT_EQ(complaint("+D"), "\"\" is not Control, Alt or Super.");
  EXPECT_EQ(complaint("Control++D"), "\"\" is not Control, Alt or Super.");
  EXPECT_EQ(complaint("F9"), "A hot key needs Control, Alt or Super.");
}

}  // namespace
}  // namespace quillfade
