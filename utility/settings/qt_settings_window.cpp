#include "utility/settings/qt_settings_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QIcon>
#include <QMainWindow>
#include <QScreen>
#include <QScrollArea>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>

#include "utility/loop/qt_application.h"
#include "utility/settings/focus_follower.h"
#include "utility/style/slim_scroll_bar.h"
#include "utility/style/tones.h"

namespace tarnwick {

namespace {

constexpr int windowWidth = 460;
constexpr int leastHeight = 380;
constexpr int greatestHeight = 640;
// A window manager writes several properties for one change of state.
constexpr std::chrono::milliseconds propertiesSettle{50};
// Between two undoings, so that a window manager that insists is not fought without end.
constexpr std::chrono::milliseconds leastBetweenUndoings{1000};

class SettingsWidget : public QMainWindow {
 public:
  SettingsWidget(std::shared_ptr<SettingsView> view, const HotkeyRows& hotkeyRows,
                 QtSettingsWindows::Effects effects)
      : QMainWindow(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                 Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
        view_(std::move(view)),
        effects_(std::move(effects)),
        form_(new SettingsForm(view_, hotkeyRows)) {
    setWindowTitle(QStringLiteral("Tarnwick"));
    setWindowIcon(QIcon::fromTheme(QLatin1String(QtApplication::identifier)));
    setAttribute(Qt::WA_QuitOnClose, false);
    takePalette();
    scroll_.setFrameShape(QFrame::NoFrame);
    scroll_.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_.setVerticalScrollBar(new SlimScrollBar);
    scroll_.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);  // shows itself only when needed
    scroll_.setFocusPolicy(Qt::NoFocus);
    scroll_.viewport()->setAutoFillBackground(false);
    scroll_.setWidgetResizable(true);
    scroll_.setWidget(form_);
    form_->setAutoFillBackground(false);
    connect(addKeyedAction(SettingsForm::tr("Close Window"),
                           QKeySequence::keyBindings(QKeySequence::Close)),
            &QAction::triggered, this, &QWidget::close);
    connect(
        addKeyedAction(SettingsForm::tr("Quit Tarnwick"), {QKeySequence(QStringLiteral("Ctrl+Q"))}),
        &QAction::triggered, form_, &SettingsForm::quit);
    undoing_.setSingleShot(true);
    connect(&undoing_, &QTimer::timeout, this, [this] { undoStates(); });
    observer_ = view_->onChanged([this] { form_->sync(); });

    const int fitting = std::min(form_->sizeHint().height(), freeArea().height() * 9 / 10);
    setFixedSize(windowWidth, std::clamp(fitting, leastHeight, greatestHeight));
    scroll_.resize(size());
    place_ = centred();
    winId();
    windowHandle()->installEventFilter(this);
  }

  void present() {
    if (!isVisible())
      move(QGuiApplication::screenAt(place_ + rect().center()) ? place_ : centred());
    setWindowState(Qt::WindowNoState);
    show();
    raise();
    activateWindow();
  }

  // There is no frame, which counts for the centre, before the window is first exposed.
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Expose && windowHandle()->isExposed()) {
      watched->removeEventFilter(this);
      windowHandle()->setFramePosition(centred());
    }
    return QMainWindow::eventFilter(watched, event);
  }

 protected:
  void showEvent(QShowEvent* event) override {
    if (!event->spontaneous()) view_->appear();
  }

  void closeEvent(QCloseEvent* event) override {
    // The widget's own pos() counts the frame only after a move of the window.
    place_ = windowHandle()->framePosition();
    event->accept();  // no more than hidden
  }

  // Another program may have changed meanwhile what is shown.
  void changeEvent(QEvent* event) override {
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
      view_->refreshLaunchAtLogin();
      form_->sync();
    }
    if (event->type() == QEvent::WindowStateChange) undoStatesSoon();
    QMainWindow::changeEvent(event);
  }

  // The toolkit tells nothing of a window that is maximised in one direction only.
  void moveEvent(QMoveEvent* event) override {
    QMainWindow::moveEvent(event);
    undoStatesSoon();
  }

  bool event(QEvent* event) override {
    if (event->type() == QEvent::ApplicationPaletteChange) takePalette();
    // No control has the focus until the user gives it to one.
    if (event->type() == QEvent::WindowActivate && !focusWidget()) form_->setFocus();
    return QMainWindow::event(event);
  }

 private:
  // Some window managers minimise and maximise windows that allow neither.
  void undoStatesSoon() {
    auto wait = propertiesSettle;
    if (sinceUndoing_.isValid()) {
      wait =
          std::max(wait, leastBetweenUndoings - std::chrono::milliseconds(sinceUndoing_.elapsed()));
    }
    undoing_.start(wait);
  }
  void undoStates() {
    // To the toolkit, a window on a desktop that is not shown is minimised as well.
    if (isMinimized() && !effects_.isMinimized(winId())) return;
    const bool isOther = windowState() & ~Qt::WindowStates(Qt::WindowActive);
    setWindowState(Qt::WindowNoState);
    if (effects_.unmaximize(winId()) || isOther) sinceUndoing_.start();
  }

  static QRect freeArea() {
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
  }
  // What the window answers to; a recorder in it knows these for taken.
  QAction* addKeyedAction(const QString& title, const QList<QKeySequence>& keys) {
    auto* const action = new QAction(title, this);
    action->setShortcuts(keys);
    addAction(action);
    return action;
  }
  // Of the frame's corner; there is no frame before the window is shown for the first time.
  QPoint centred() const {
    QRect frame = rect().marginsAdded(windowHandle() ? windowHandle()->frameMargins() : QMargins());
    frame.moveCenter(freeArea().center());
    return frame.topLeft();
  }

  void takePalette() {
    QPalette palette;
    palette.setColor(QPalette::PlaceholderText, tonesOf(QApplication::palette()).secondary);
    setPalette(palette);
  }

  const std::shared_ptr<SettingsView> view_;
  const QtSettingsWindows::Effects effects_;
  QTimer undoing_;
  QElapsedTimer sinceUndoing_;  // invalid before the first
  QScrollArea scroll_{this};
  SettingsForm* const form_;
  FocusFollower follower_{scroll_};
  QPoint place_;  // of the frame's corner, when it is shown the next time
  Registration observer_;
};

class QtSettingsWindow : public SettingsWindow {
 public:
  QtSettingsWindow(std::shared_ptr<SettingsView> view, const HotkeyRows& hotkeyRows,
                   QtSettingsWindows::Effects effects)
      : widget_(std::move(view), hotkeyRows, effects), effects_(std::move(effects)) {}

  void makeKeyAndOrderFront() override { widget_.present(); }
  void orderFrontRegardless() override { effects_.bringToUser(widget_.winId()); }
  bool isVisible() const override { return widget_.isVisible(); }

 private:
  SettingsWidget widget_;
  QtSettingsWindows::Effects effects_;
};

}  // namespace

std::unique_ptr<SettingsWindow> QtSettingsWindows::makeSettingsWindow(
    std::shared_ptr<SettingsView> view) {
  return std::make_unique<QtSettingsWindow>(std::move(view), hotkeyRows_, effects_);
}

}  // namespace tarnwick
