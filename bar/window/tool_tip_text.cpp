#include "bar/window/tool_tip_text.h"

#include <QTextDocument>

namespace tarnwick::bar {

namespace {

constexpr qsizetype maximumInput = 20'000;  // characters, tags included
constexpr int maximumText = 1'000;
constexpr int maximumBreaks = 19;

const QString lineBreak = QStringLiteral("<br>");

// The tag's name in lower case, with its slash when it closes.
QString tagName(QStringView tag) {
  qsizetype end = tag.startsWith(QLatin1Char('/')) ? 1 : 0;
  while (end < tag.size() && tag[end].isLetterOrNumber()) ++end;
  return tag.left(end).toString().toLower();
}

// The entity at the start of `text`, as far as plain tool tips use them; empty for a bare "&".
QStringView entity(QStringView text) {
  const qsizetype end = text.left(10).indexOf(QLatin1Char(';'));
  if (end < 2) return {};
  for (const QChar character : text.mid(1, end - 1)) {
    if (!character.isLetterOrNumber() && character != QLatin1Char('#')) return {};
  }
  return text.left(end + 1);
}

QString fromMarkup(QStringView text) {
  QString result;
  int open = 0;
  int length = 0;
  int breaks = 0;
  while (!text.isEmpty() && length < maximumText) {
    qsizetype taken = 1;
    if (text[0] == QLatin1Char('<')) {
      const qsizetype end = text.indexOf(QLatin1Char('>'));
      if (end < 0) break;
      taken = end + 1;
      const QString name = tagName(text.mid(1, end - 1));
      const bool closing = name.startsWith(QLatin1Char('/'));
      const QString base = name.mid(closing ? 1 : 0);
      if (base == QLatin1String("b") || base == QLatin1String("i") || base == QLatin1String("u")) {
        if (!closing || open > 0) result += QLatin1Char('<') + name + QLatin1Char('>');
        open += closing ? (open > 0 ? -1 : 0) : 1;
      } else if ((base == QLatin1String("br") || base == QLatin1String("p") ||
                  base == QLatin1String("div") || base == QLatin1String("tr") ||
                  base == QLatin1String("li")) &&
                 !result.isEmpty() && !result.endsWith(lineBreak)) {
        if (++breaks > maximumBreaks) break;
        result += lineBreak;
      } else if (base == QLatin1String("style") || base == QLatin1String("script") ||
                 base == QLatin1String("head")) {
        // Their contents are no text.
        const qsizetype close =
            text.indexOf(QStringLiteral("</") + base, taken, Qt::CaseInsensitive);
        if (!closing && close < 0) break;
        if (!closing) taken = close;
      }
    } else if (text[0] == QLatin1Char('&')) {
      const QStringView known = entity(text);
      result += known.isEmpty() ? QStringLiteral("&amp;") : known.toString();
      taken = known.isEmpty() ? 1 : known.size();
      ++length;
    } else {
      result += text[0];
      ++length;
    }
    text = text.mid(taken);
  }
  while (result.endsWith(lineBreak)) result.chop(lineBreak.size());
  return result;
}

QString fromPlain(const QString& text) {
  QStringList lines = text.left(maximumText).split(QLatin1Char('\n'));
  lines = lines.mid(0, maximumBreaks + 1);
  return lines.join(QLatin1Char('\n')).toHtmlEscaped().replace(QLatin1Char('\n'), lineBreak);
}

}  // namespace

QString toolTipMarkup(const QString& text) {
  const QString input = text.left(maximumInput).trimmed();
  const QString result = Qt::mightBeRichText(input) ? fromMarkup(input) : fromPlain(input);
  // As markup even without a tag, so that entities are shown as what they stand for.
  return result.isEmpty() ? QString() : QStringLiteral("<qt>") + result + QStringLiteral("</qt>");
}

}  // namespace tarnwick::bar
