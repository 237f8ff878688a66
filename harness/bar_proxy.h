#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QVariantList>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick::desktop {
class IdentityResolver;
}

namespace tarnwick::test {

// One item as the bar lists it. Frames in points from the primary monitor's top left corner.
struct BarItem {
  quint64 id = 0;
  qint32 pid = 0;
  QString kind;  // "sni", "xembed" or "native"
  QString hint;
  QString title;
  QRectF frame;
  QString busName;
  QString objectPath;
  QString menuPath;
  QString bundleId;  // the owner's application, found as the programs find it

  double centre() const { return frame.center().x(); }
};

using BarItems = std::vector<BarItem>;

// The bar as any program on the bus sees it (org.tarnwick.MenuBar1). Calls wait for the answer, at
// most five seconds.
class BarProxy {
 public:
  static constexpr auto service = "org.tarnwick.MenuBar1";
  static constexpr auto path = "/org/tarnwick/MenuBar1";
  static constexpr std::uint32_t superModifier = 8;
  enum class Pointer : std::uint8_t { press = 1, drag = 2, release = 3 };

  explicit BarProxy(QDBusConnection bus);
  ~BarProxy();

  bool running() const;

  // In order of registration; empty and error() set when the bar refuses or does not answer.
  BarItems items();
  // The first item of an application, or with this hint or title.
  std::optional<BarItem> find(const QString& bundleIdOrHint);
  BarItems itemsOf(const QString& bundleId);
  BarItems leftToRight();
  // Error name of the last call; empty when it succeeded.
  const QString& error() const { return error_; }

  QRectF frame();  // the bar's own
  bool hasAccess(const QString& capability);
  bool requestAccess(const QString& capability);  // asks the user and waits for the answer
  quint64 addItem(const QString& autosaveName, double length);
  void press(quint64 id);
  struct Picture {
    uint width = 0;
    uint height = 0;
    QByteArray rgba;
  };
  Picture render(quint64 id, uint width, uint height);
  void postPointer(Pointer kind, QPointF at, std::uint32_t modifiers = superModifier);
  // A whole rearranging drag, as the utility does it but without its pauses.
  void drag(const BarItem& item, double toX);

  QVariantList call(const QString& method, const QVariantList& arguments = {},
                    int timeOut = 5000);  // milliseconds

 private:
  // Well-known names that the process owns on the bus.
  std::vector<std::string> namesOf(std::int32_t pid) const;

  QDBusConnection bus_;
  QString error_;
  std::unique_ptr<desktop::IdentityResolver> identities_;
  std::map<qint32, QString> bundleIds_;
};

// A table of items, one line each, for people.
QString describe(const BarItems& items);

}  // namespace tarnwick::test
