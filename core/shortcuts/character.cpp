#include "core/shortcuts/character.h"

#include <span>

#include "core/shortcuts/letter_case.h"

namespace tarnwick::KeyboardShortcuts {

namespace {

using Runs = std::span<const LetterRun>;

const LetterRun* runOf(char32_t letter, Runs runs, int offset = 0) {
  for (const LetterRun& run : runs) {
    const char32_t first = run.first + static_cast<char32_t>(offset * run.distance);
    const char32_t last = run.last + static_cast<char32_t>(offset * run.distance);
    if (letter >= first && letter <= last && (letter - first) % run.step == 0) return &run;
  }
  return nullptr;
}

char32_t moved(char32_t letter, int by) {
  return letter + static_cast<char32_t>(by);
}

// How many bytes the first character of a text in UTF-8 takes.
std::size_t lengthOfFirst(const std::string& text) {
  const auto lead = static_cast<unsigned char>(text.front());
  return lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

// The character that a text in UTF-8 is; absent when it is not one.
std::optional<char32_t> onlyCharacter(const std::string& text) {
  if (text.empty() || text.size() != lengthOfFirst(text)) return std::nullopt;
  const std::size_t length = text.size();
  const auto lead = static_cast<unsigned char>(text.front());
  char32_t value = length == 1 ? lead : lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    value = value << 6 | (static_cast<unsigned char>(text[i]) & 0x3FU);
  }
  return value;
}

constexpr char32_t sharpS = 0xDF;

}  // namespace

std::optional<std::string> character(std::int64_t value) {
  if (value < 0 || value >= 0x110000 || (value >= 0xD800 && value <= 0xDFFF)) return std::nullopt;
  std::string text;
  const auto append = [&text](std::int64_t byte) { text += static_cast<char>(byte); };
  const auto continuation = [&](int shift) { append(0x80 | ((value >> shift) & 0x3F)); };
  if (value < 0x80) {
    append(value);
  } else if (value < 0x800) {
    append(0xC0 | (value >> 6));
  } else if (value < 0x10000) {
    append(0xE0 | (value >> 12));
  } else {
    append(0xF0 | (value >> 18));
    continuation(12);
  }
  if (value >= 0x800) continuation(6);
  if (value >= 0x80) continuation(0);
  return text;
}

std::string capitalised(char32_t letter) {
  if (letter == sharpS) return "Ss";
  for (const Runs runs : {Runs(casePairs), Runs(smallOnly)}) {
    if (const auto* const run = runOf(letter, runs)) {
      return *character(moved(letter, run->distance));
    }
  }
  return character(letter).value_or(std::string());
}

std::string capitalised(const std::string& text) {
  if (text.empty()) return text;
  const std::string first = text.substr(0, lengthOfFirst(text));
  const auto letter = onlyCharacter(first);
  return (letter ? capitalised(*letter) : first) + text.substr(first.size());
}

std::string lowerCased(const std::string& text) {
  const auto letter = onlyCharacter(text);
  if (!letter) return text;
  if (const auto* const run = runOf(*letter, capitalOnly)) {
    return *character(moved(*letter, run->distance));
  }
  const auto* const pair = runOf(*letter, casePairs, 1);
  return pair ? *character(moved(*letter, -pair->distance)) : text;
}

}  // namespace tarnwick::KeyboardShortcuts
