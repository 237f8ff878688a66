#include "shortcuts/character.h"

#include <iterator>

namespace tarnwick::KeyboardShortcuts {

namespace {

// Letters whose capitals stand at one distance, or, with a step of 2, alternate with them. Where
// two have the same capital, the usual one is the later.
struct Run {
  char32_t first, last;
  int step, distance;
};

constexpr Run runs[] = {
    {0x131, 0x131, 1, -0xE8}, {U'a', U'z', 1, -0x20},   {0xB5, 0xB5, 1, 0x2E7},
    {0xE0, 0xF6, 1, -0x20},   {0xF8, 0xFE, 1, -0x20},   {0xFF, 0xFF, 1, 0x79},
    {0x101, 0x12F, 2, -1},    {0x133, 0x137, 2, -1},    {0x13A, 0x148, 2, -1},
    {0x14B, 0x177, 2, -1},    {0x17A, 0x17E, 2, -1},    {0x1A1, 0x1A1, 1, -1},
    {0x1B0, 0x1B0, 1, -1},    {0x219, 0x21B, 2, -1},    {0x3AC, 0x3AC, 1, -0x26},
    {0x3AD, 0x3AF, 1, -0x25}, {0x3B1, 0x3C1, 1, -0x20}, {0x3C2, 0x3C2, 1, -0x1F},
    {0x3C3, 0x3CB, 1, -0x20}, {0x3CC, 0x3CC, 1, -0x40}, {0x3CD, 0x3CE, 1, -0x3F},
    {0x430, 0x44F, 1, -0x20}, {0x450, 0x45F, 1, -0x50}, {0x491, 0x4BF, 2, -1},
    {0x561, 0x586, 1, -0x30}, {0x1E01, 0x1E95, 2, -1},  {0x1EA1, 0x1EFF, 2, -1},
};

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
  std::int64_t capital = letter;
  for (const Run& run : runs) {
    if (letter < run.first || letter > run.last) continue;
    if ((letter - run.first) % static_cast<unsigned>(run.step) == 0) capital += run.distance;
    break;
  }
  return character(capital).value_or(std::string());
}

std::string lowerCased(const std::string& letter) {
  for (auto run = std::rbegin(runs); run != std::rend(runs); ++run) {
    for (char32_t small = run->first; small <= run->last; small += run->step) {
      if (capitalised(small) == letter) return *character(small);
    }
  }
  return letter;
}

}  // namespace tarnwick::KeyboardShortcuts
