#include "Quillfade/Keys/HotKeyReport.h"

#include <algorithm>
#include <sstream>

namespace quillfade {
namespace {

constexpr std::string_view boundText = "bound";
constexpr std::string_view takenText = "taken by another program";

std::string padded(const std::string& text, std::size_t width) {
  return text + std::string(width > text.size() ? width - text.size() : 0, ' ');
}

}  // namespace

HotKeyState hotKeyState(const HotKey& key, bool isBound) {
  return {combinationText(key.combination), std::string{key.word}, isBound};
}

std::string hotKeyText(const std::vector<HotKeyState>& states) {
  std::size_t combinationWidth = 0;
  std::size_t wordWidth = 0;
  for (const auto& state : states) {
    combinationWidth = std::max(combinationWidth, state.combination.size());
    wordWidth = std::max(wordWidth, state.word.size());
  }
  std::string text;
  for (const auto& state : states) {
    text += padded(state.combination, combinationWidth) + "  " + padded(state.word, wordWidth) + "  ";
    text += state.isBound ? boundText : takenText;
    text += '\n';
  }
  return text;
}

std::vector<HotKeyState> parseHotKeyText(std::string_view text) {
  std::vector<HotKeyState> states;
  std::istringstream lines{std::string{text}};
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    HotKeyState state;
    std::string rest;
    if (!(words >> state.combination >> state.word >> std::ws) || !std::getline(words, rest)) continue;
    state.isBound = rest == boundText;
    if (state.isBound || rest == takenText) states.push_back(state);
  }
  return states;
}

}  // namespace quillfade
