#include "utility/bar_client/bar_status_bar.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QSizeF>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <utility>

#include "utility/pictures/render_drawing.h"

namespace tarnwick {

namespace {

constexpr double highestBar = 60;  // points
constexpr std::chrono::seconds retryDelay{1};

// The bar shows a picture one to one or averages two by two pixels into one: both are as sharp as
// drawing it in place, any other reduction blurs. At least two, so that a bar of scale 2 beside a
// program of scale 1 gets enough.
double pictureDensity() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  const double ratio = screen ? std::clamp(screen->devicePixelRatio(), 1.0, 4.0) : 1.0;
  return ratio < 2 ? ratio * 2 : ratio;
}

ClickType clickType(uint button) {
  switch (button) {
    case 1:
      return ClickType::leftMouseUp;
    case 3:
      return ClickType::rightMouseUp;
    default:
      return ClickType::other;
  }
}

}  // namespace

class BarStatusBar::Item : public StatusItem {
 public:
  Item(BarStatusBar* bar, EntryPtr entry) : bar_(bar), entry_(std::move(entry)) {}
  ~Item() override {
    if (bar_) bar_->remove(entry_);
  }

  void setLength(double points) override {
    if (std::exchange(entry_->length, points) != points && bar_) bar_->sendLength(*entry_);
  }
  void placeLeftOf(const StatusItem& sibling) override {
    const Entry& other = *static_cast<const Item&>(sibling).entry_;
    if (!bar_ || !entry_->id || !other.id) return;
    bar_->bar_.send(QStringLiteral("PlaceLeftOf"), {*entry_->id, *other.id});
  }
  void setImage(const Drawing& image) override {
    if (entry_->image == image) return;
    entry_->image = image;
    if (bar_) bar_->sendImage(*entry_);
  }
  void setOnClick(std::function<void(const ClickEvent&)> callback) override {
    entry_->onClick = std::move(callback);
  }
  std::optional<Rect> frame() const override { return bar_ ? bar_->frame(*entry_) : std::nullopt; }

 private:
  const QPointer<BarStatusBar> bar_;
  const EntryPtr entry_;
};

BarStatusBar::BarStatusBar(BarConnection& bar, const BarSnapshots& snapshots)
    : bar_(bar), snapshots_(snapshots), pixelsPerPoint_(pictureDensity()) {
  connect(&bar_, &BarConnection::appeared, this, [this] {
    for (const auto& entry : entries_) put(entry);
  });
  connect(&bar_, &BarConnection::vanished, this, [this] {
    for (const auto& entry : entries_) entry->id.reset();
    vanished_.notify();
  });
  connect(&bar_, &BarConnection::itemClicked, this, &BarStatusBar::onClicked);
  connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, [this] { watchPrimaryScreen(); });
  watchPrimaryScreen();
}

std::unique_ptr<StatusItem> BarStatusBar::addItem(double length, const std::string& autosaveName) {
  auto entry = std::make_shared<Entry>();
  entry->autosaveName = autosaveName;
  entry->length = length;
  entries_.push_back(entry);
  put(entry);
  return std::make_unique<Item>(this, std::move(entry));
}

void BarStatusBar::put(const EntryPtr& entry) {
  bar_.call(
      QStringLiteral("AddItem"), {QString::fromStdString(entry->autosaveName), entry->length}, this,
      [this, entry, sent = entry->length](const QDBusMessage& reply) {
        if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("t")) {
          if (reply.type() != QDBusMessage::ErrorMessage) return;  // the next bar gets the item
          QTimer::singleShot(retryDelay, this, [this, weak = std::weak_ptr(entry)] {
            const auto again = weak.lock();
            if (again && !again->id && bar_.isPresent()) put(again);
          });
          return;
        }
        const auto id = reply.arguments().constFirst().toULongLong();
        if (std::find(entries_.begin(), entries_.end(), entry) == entries_.end()) {
          bar_.send(QStringLiteral("RemoveItem"), {id});  // dropped meanwhile
          return;
        }
        entry->id = id;
        if (entry->length != sent) sendLength(*entry);
        sendImage(*entry);
        if (arePlaced()) placed_.notify();
      });
}

bool BarStatusBar::arePlaced() const {
  return std::all_of(entries_.begin(), entries_.end(),
                     [](const EntryPtr& entry) { return entry->id.has_value(); });
}

void BarStatusBar::remove(const EntryPtr& entry) {
  std::erase(entries_, entry);
  if (entry->id) bar_.send(QStringLiteral("RemoveItem"), {*entry->id});
}

void BarStatusBar::sendLength(const Entry& entry) {
  if (entry.id) bar_.send(QStringLiteral("SetLength"), {*entry.id, entry.length});
}

void BarStatusBar::sendImage(const Entry& entry) {
  if (!entry.id || !entry.image) return;
  const QImage picture = renderDrawing(*entry.image, pixelsPerPoint_);
  const QByteArray pixels(reinterpret_cast<const char*>(picture.constBits()),
                          picture.sizeInBytes());
  bar_.send(QStringLiteral("SetImage"),
            {*entry.id, QSizeF(entry.image->size.width, entry.image->size.height),
             static_cast<uint>(picture.width()), static_cast<uint>(picture.height()), pixels,
             entry.image->isTemplate});
}

std::optional<Rect> BarStatusBar::frame(const Entry& entry) {
  if (!entry.id) return std::nullopt;
  const auto picture = snapshots_.living();
  const BarItem* const item = picture ? picture->find(*entry.id) : nullptr;
  return item ? std::optional(item->frame) : bar_.ownFrame(*entry.id);
}

void BarStatusBar::onClicked(quint64 id, uint button, uint modifiers, QPointF at) {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [id](const EntryPtr& entry) { return entry->id == id; });
  if (found == entries_.end()) return;
  const auto callback = (*found)->onClick;  // may be replaced, or the item dropped, while it runs
  if (callback) callback({clickType(button), modifiers, Point{at.x(), at.y()}});
}

void BarStatusBar::watchPrimaryScreen() {
  if (const QScreen* screen = QGuiApplication::primaryScreen()) {
    connect(screen, &QScreen::geometryChanged, this, &BarStatusBar::sendImagesOfNewDensity,
            Qt::UniqueConnection);
    connect(screen, &QScreen::logicalDotsPerInchChanged, this,
            &BarStatusBar::sendImagesOfNewDensity, Qt::UniqueConnection);
  }
  sendImagesOfNewDensity();
}

void BarStatusBar::sendImagesOfNewDensity() {
  const double density = pictureDensity();
  if (std::exchange(pixelsPerPoint_, density) == density) return;
  for (const auto& entry : entries_) sendImage(*entry);
}

bool BarStatusBar::hasItemAt(Point place) {
  // What is laid out beyond the left end stands on no monitor, whatever is left of this one.
  if (place.y > highestBar || place.x < 0) return false;
  return std::any_of(entries_.begin(), entries_.end(), [&](const EntryPtr& entry) {
    const auto present = frame(*entry);
    return present && present->contains(place);
  });
}

}  // namespace tarnwick
