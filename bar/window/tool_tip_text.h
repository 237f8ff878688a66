#pragma once

#include <QString>

namespace tarnwick::bar {

// A tool tip as a program gave it, plain or marked up, as markup that is safe to show: the tags b,
// i, u and br without attributes, paragraphs as line breaks, everything else of its tags dropped
// (links, pictures, styles), at most 1,000 characters and 20 lines of text. Empty when nothing is
// left.
QString toolTipMarkup(const QString& text);

}  // namespace tarnwick::bar
