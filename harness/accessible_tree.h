#pragma once

#include <QDBusConnection>
#include <QRect>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "harness/private_desktop.h"

namespace tarnwick::test {

// One object of an application's accessibility tree.
struct Accessible {
  QString busName;
  QString path;
  QString name;
  QString role;  // "push button", "check box", ...
  QString text;  // of its Value or Text interface; empty when it has none
};

// The desktop's accessibility tree, as a screen reader sees it (AT-SPI over D-Bus). Programs that
// are to be in it are started after it.
class AccessibleTree {
 public:
  explicit AccessibleTree(PrivateDesktop& desktop);
  ~AccessibleTree();

  // Every object of the application, parents before children.
  std::vector<Accessible> objectsOf(const QString& application);
  // The first one of that name and, unless empty, role.
  std::optional<Accessible> find(const QString& application, const QString& name,
                                 const QString& role = {});

  QString descriptionOf(const Accessible& object);
  QRect frameOf(const Accessible& object);  // on the screen, in pixels
  enum class State : std::uint8_t {
    active = 1,
    checked = 4,
    enabled = 8,
    focused = 12,
    showing = 25,
    visible = 30  // perhaps scrolled out of sight
  };
  bool has(const Accessible& object, State state);

  QStringList actions(const Accessible& object);
  // Does an object's action, usually 0 for its press; false when it has none.
  bool doAction(const Accessible& object, int index = 0);

 private:
  void collect(const QString& busName, const QString& path, int depth,
               std::vector<Accessible>& into);
  QVariantList call(const QString& busName, const QString& path, const char* interface,
                    const char* method, const QVariantList& arguments = {});
  QString property(const QString& busName, const QString& path, const char* interface,
                   const char* name);

  std::unique_ptr<QDBusConnection> bus_;
};

// Scrolls the utility's settings until a control is wholly in sight. Where it is then; empty when
// it does not come.
QRect scrollToSetting(PrivateDesktop& desktop, AccessibleTree& tree, const QString& name,
                      const QString& role);

}  // namespace tarnwick::test
