#include "utility/style/tones.h"

namespace tarnwick {

namespace {

// `share` of the second colour, 0 to 1.
QColor mix(const QColor& first, const QColor& second, float share) {
  const auto channel = [share](float from, float to) { return from + (to - from) * share; };
  return QColor::fromRgbF(channel(first.redF(), second.redF()),
                          channel(first.greenF(), second.greenF()),
                          channel(first.blueF(), second.blueF()));
}

}  // namespace

Tones tonesOf(const QPalette& palette) {
  const QColor ground = palette.color(QPalette::Active, QPalette::Window);
  const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
  const bool dark = ground.lightness() < 128;
  Tones tones;
  tones.text = text;
  tones.card = dark ? mix(ground, Qt::white, 0.06F) : mix(ground, Qt::white, 0.85F);
  tones.secondary = mix(tones.card, text, 0.64F);
  tones.line = mix(tones.card, text, dark ? 0.12F : 0.11F);
  tones.control = mix(tones.card, text, dark ? 0.12F : 0.08F);
  tones.controlHover = mix(tones.card, text, dark ? 0.17F : 0.12F);
  tones.controlPressed = mix(tones.card, text, dark ? 0.24F : 0.20F);
  tones.field = dark ? mix(tones.card, Qt::black, 0.22F) : QColor(Qt::white);
  tones.fieldLine = mix(tones.card, text, dark ? 0.26F : 0.24F);
  tones.track = mix(tones.card, text, dark ? 0.30F : 0.26F);
  tones.knob = Qt::white;
  tones.accent = palette.color(QPalette::Active, QPalette::Highlight);
  tones.accentPressed = mix(tones.accent, Qt::black, 0.14F);
  tones.onAccent = palette.color(QPalette::Active, QPalette::HighlightedText);
  tones.scroller = mix(ground, text, 0.30F);
  tones.warning = dark ? QColor(0xff, 0xb3, 0x40) : QColor(0xd9, 0x7b, 0x00);
  return tones;
}

}  // namespace tarnwick
