#pragma once

#include <QColor>
#include <QPalette>

namespace tarnwick {

// The colours of a form of cards, mixed from the toolkit's palette so that they follow it.
struct Tones {
  QColor text;
  QColor secondary;  // of notes and placeholders
  QColor card;
  QColor line;     // around cards and between their rows
  QColor control;  // of buttons and pickers
  QColor controlHover;
  QColor controlPressed;
  QColor field;
  QColor fieldLine;
  QColor track;  // of a switch that is off
  QColor knob;
  QColor accent;
  QColor accentPressed;
  QColor onAccent;  // of text on it
  QColor scroller;
  QColor warning;
};

Tones tonesOf(const QPalette& palette);

}  // namespace tarnwick
