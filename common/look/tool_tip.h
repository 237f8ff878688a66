#pragma once

#include <QString>

namespace tarnwick {

// Text of others as a tool tip that shows it as it is: the toolkit guesses by the text whether it
// is markup, and entities would be shown where it guesses wrongly.
inline QString plainToolTip(const QString& text) {
  return QStringLiteral("<p style='white-space:pre'>") + text.toHtmlEscaped() +
         QStringLiteral("</p>");
}

// The same in several lines, for a text that may be wider than the monitor.
inline QString wrappedToolTip(const QString& text) {
  return QStringLiteral("<p style='white-space:pre-wrap'>") + text.toHtmlEscaped() +
         QStringLiteral("</p>");
}

}  // namespace tarnwick
