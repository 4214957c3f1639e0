#include "Quillfade/Keys/HotKeyReport.h"

#include <algorithm>
#include <array>
#include <optional>
#include <sstream>
#include <utility>

#include "Quillfade/Basics/EscapedText.h"

namespace quillfade {
namespace {

using platform::HotKeyStanding;
using Kind = HotKeyStanding::Kind;

struct KindText {
  Kind kind;
  std::string_view text;
};

constexpr std::array kindTexts{
    KindText{Kind::held, "bound"},
    KindText{Kind::taken, "taken by another program"},
    KindText{Kind::awaited, "waiting for the desktop's answer"},
    KindText{Kind::declined, "declined by the desktop or its user"},
    KindText{Kind::unassigned, "known to the desktop, which has given it no keys"},
    KindText{Kind::unavailable, "not given by this desktop"},
};

constexpr std::string_view beforeDetail = ": ";

// The desktop's words are foreign text.
std::string standingText(const HotKeyStanding& standing) {
  const std::string text{std::ranges::find(kindTexts, standing.kind, &KindText::kind)->text};
  return standing.detail.empty() ? text : text + std::string{beforeDetail} + escapedText(standing.detail);
}

std::optional<HotKeyStanding> parseStanding(std::string_view text) {
  const auto end = text.find(beforeDetail);
  const auto found = std::ranges::find(kindTexts, text.substr(0, end), &KindText::text);
  if (found == kindTexts.end()) return std::nullopt;
  const auto detail = end == std::string_view::npos ? std::string_view{} : text.substr(end + beforeDetail.size());
  return HotKeyStanding{found->kind, std::string{detail}};
}

std::string padded(const std::string& text, std::size_t width) {
  return text + std::string(width > text.size() ? width - text.size() : 0, ' ');
}

}  // namespace

HotKeyState hotKeyState(const HotKey& key, HotKeyStanding standing) {
  return {combinationText(key.combination), std::string{key.word}, std::move(standing)};
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
    text += standingText(state.standing) + '\n';
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
    if (const auto standing = parseStanding(rest)) {
      state.standing = *standing;
      states.push_back(state);
    }
  }
  return states;
}

}  // namespace quillfade
