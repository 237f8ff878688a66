#include <QHash>
#include <QRegularExpression>
#include <QStringList>
#include <QXmlStreamReader>

#include "utility/desktop_shortcuts/combination.h"

namespace tarnwick::shortcuts {

namespace {

void add(Combinations& all, const QString& text, Notation notation) {
  if (const auto combination = parseCombination(text, notation)) all.push_back(*combination);
}

struct XfceGroups {
  QHash<QString, Combinations> bound;  // by "commands/custom" and the like
  bool override[2] = {};               // commands, xfwm4: their defaults are not in force
  bool damaged = false;
};

void readXfce(const QByteArray& text, XfceGroups& groups) {
  QXmlStreamReader xml(text);
  QStringList path;
  while (!text.isEmpty() && !xml.atEnd()) {
    const auto token = xml.readNext();
    if (token == QXmlStreamReader::EndElement && !path.isEmpty()) path.removeLast();
    if (token != QXmlStreamReader::StartElement) continue;
    const auto name = xml.attributes().value("name").toString();
    const auto value = xml.attributes().value("value");
    if (path.size() == 3 && !value.isEmpty()) {
      const QString group = path[1] + '/' + path[2];
      if (name == "override") {
        groups.override[path[1] == "xfwm4"] |= path[2] == "custom" && value == u"true";
      } else {
        add(groups.bound[group], name, Notation::gtk);
      }
    }
    path.append(name);
  }
  groups.damaged |= !text.isEmpty() && xml.hasError();
}

}  // namespace

// A binding without any action is not in force. Of a chain its first key is taken.
Combinations openboxCombinations(const QByteArray& text) {
  QXmlStreamReader xml(text);
  Combinations all;
  QStringList path;
  QString keys;
  while (!xml.atEnd()) {
    const auto token = xml.readNext();
    if (token == QXmlStreamReader::EndElement && !path.isEmpty()) path.removeLast();
    if (token != QXmlStreamReader::StartElement) continue;
    const auto name = xml.name();
    const bool inKeyboard = path.size() >= 2 && path[1] == "keyboard";
    if (inKeyboard && path.size() == 2 && name == u"keybind") {
      keys = xml.attributes().value("key").toString();
    } else if (inKeyboard && path.size() == 3 && path[2] == "keybind" &&
               (name == u"action" || name == u"keybind")) {
      for (const auto& key : keys.split(' ', Qt::SkipEmptyParts)) add(all, key, Notation::openbox);
      keys.clear();
    }
    path.append(name.toString());
  }
  return xml.hasError() ? Combinations() : all;
}

Combinations xfceCombinations(const QByteArray& users, const QByteArray& systems) {
  XfceGroups groups;
  readXfce(users, groups);
  readXfce(systems, groups);
  if (groups.damaged) return {};
  Combinations all;
  for (const int part : {0, 1}) {
    const QString group = part == 0 ? "commands" : "xfwm4";
    QStringList inForce{group + "/custom"};
    if (!groups.override[part]) inForce += group + "/default";
    for (const auto& name : inForce) {
      const auto bound = groups.bound.value(name);
      all.insert(all.end(), bound.begin(), bound.end());
    }
  }
  return all;
}

// "action=active,default,label"; several active keys with \t between them.
Combinations kdeCombinations(const QByteArray& ini) {
  Combinations all;
  for (const auto& line : QString::fromUtf8(ini).split('\n')) {
    const auto equals = line.indexOf('=');
    if (equals <= 0 || line.startsWith('[') || line.startsWith('#')) continue;
    if (line.startsWith("_k_friendly_name")) continue;
    QString active;
    for (auto i = equals + 1; i < line.size() && line[i] != ','; ++i) {
      const bool escape = line[i] == '\\' && i + 1 < line.size();
      if (escape) ++i;
      active += escape && line[i] == 't' ? QChar('\t') : line[i];
    }
    for (const auto& key : active.split('\t', Qt::SkipEmptyParts)) add(all, key, Notation::qt);
  }
  return all;
}

// A section for each combination, "[Control%2BAlt%2BT.37]"; the number tells those of one apart.
Combinations lxqtCombinations(const QByteArray& ini) {
  static const QRegularExpression section("^\\[(.+)\\.\\d+\\]$");
  static const QRegularExpression off("^Enabled\\s*=\\s*(false|0)$");
  Combinations all;
  QString keys;
  for (const auto& raw : (ini + "\n[").split('\n')) {
    const QString line = QString::fromUtf8(raw).trimmed();
    if (line.startsWith('[')) {
      add(all, keys, Notation::i3);
      const auto name = section.match(line).captured(1);
      keys = QString::fromUtf8(QByteArray::fromPercentEncoding(name.toUtf8()));
    } else if (off.match(line).hasMatch()) {
      keys.clear();
    }
  }
  return all;
}

// Only what holds outside of modes.
Combinations i3Combinations(const QByteArray& text) {
  static const QRegularExpression space("\\s+");
  Combinations all;
  QHash<QString, QString> variables;
  int depth = 0;
  for (const auto& raw : QString::fromUtf8(text).replace("\\\n", " ").split('\n')) {
    const QString line = raw.trimmed();
    if (line.startsWith('#')) continue;
    if (line.endsWith('{')) ++depth;
    if (line.startsWith('}') && depth > 0) --depth;
    auto words = line.split(space, Qt::SkipEmptyParts);
    if (words.size() < 3 || depth > 0) continue;
    if (words[0] == "set") variables[words[1]] = words[2];
    const bool code = words[0] == "bindcode";
    if (!code && words[0] != "bindsym") continue;
    words.removeFirst();
    while (!words.isEmpty() && words.first().startsWith("--")) words.removeFirst();
    if (words.size() < 2) continue;
    auto parts = words[0].split('+');
    for (auto& part : parts) part = variables.value(part, part);
    if (code) parts.last() = "0x" + QString::number(parts.last().toInt(), 16);
    add(all, parts.join('+'), Notation::i3);
  }
  return all;
}

Combinations gsettingsCombinations(const QByteArray& lines) {
  static const QRegularExpression quoted("'([^']*)'");
  Combinations all;
  for (const auto& line : QString::fromUtf8(lines).split('\n')) {
    const auto value = line.section(' ', 2);
    auto match = quoted.globalMatch(value);
    while (match.hasNext()) add(all, match.next().captured(1), Notation::gtk);
  }
  return all;
}

}  // namespace tarnwick::shortcuts
