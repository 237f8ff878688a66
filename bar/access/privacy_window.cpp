#include "bar/access/privacy_window.h"

#include <QDateTime>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "common/look/application_icon.h"
#include "common/look/tool_tip.h"

namespace tarnwick::bar {

namespace {

constexpr int iconSide = 32;    // points
constexpr int pathWidth = 260;  // points

QString purpose(Capability capability) {
  return capability == Capability::accessibility
             ? PrivacyWindow::tr("Control other applications’ items")
             : PrivacyWindow::tr("Take pictures of other applications’ items");
}

}  // namespace

PrivacyWindow::PrivacyWindow(AccessStore& store) : store_(store) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(tr("Privacy"));
  resize(480, 320);

  auto* const headline =
      new QLabel(tr("These programs may do more with the status items of other "
                    "applications than the bar lets everyone do."));
  headline->setWordWrap(true);

  auto* const list = new QWidget;
  rows_ = new QVBoxLayout(list);
  rows_->setContentsMargins(12, 8, 12, 8);
  rows_->setSpacing(8);
  auto* const scroll = new QScrollArea;
  scroll->setWidget(list);
  scroll->setWidgetResizable(true);
  list->setBackgroundRole(QPalette::Base);

  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(16, 16, 16, 16);
  all->setSpacing(12);
  all->addWidget(headline);
  all->addWidget(scroll);
  auto* const askAgain = new QPushButton(tr("Let Refused Programs Ask Again"));
  askAgain->setAutoDefault(false);
  connect(askAgain, &QPushButton::clicked, this, &PrivacyWindow::askAgainClicked);
  all->addWidget(askAgain, 0, Qt::AlignLeft);

  failure_ = new QLabel(tr("The change could not be saved."));
  failure_->hide();
  all->addWidget(failure_);

  connect(&store_, &AccessStore::changed, this, &PrivacyWindow::fill);
  fill();
}

void PrivacyWindow::tell(bool saved) {
  failure_->setVisible(!saved);
}

void PrivacyWindow::fill() {
  // First: this may read the file, and tell of changes by coming here.
  const AccessStore::Grants grants = store_.grants();
  while (QLayoutItem* const old = rows_->takeAt(0)) {
    // A button that was just clicked is among them.
    if (old->widget()) {
      old->widget()->hide();
      old->widget()->deleteLater();
    }
    delete old;
  }
  bool empty = true;
  for (const auto& [executable, capabilities] : grants) {
    for (const Capability capability : capabilities) {
      rows_->addWidget(row(executable, capability));
      empty = false;
    }
  }
  if (empty) {
    auto* const nobody = new QLabel(tr("No program has been allowed anything."));
    nobody->setAlignment(Qt::AlignCenter);
    nobody->setForegroundRole(QPalette::PlaceholderText);
    rows_->addStretch();
    rows_->addWidget(nobody);
  }
  rows_->addStretch();
}

QWidget* PrivacyWindow::row(const std::string& executable, Capability capability) {
  const QString path = QString::fromStdString(executable);
  const QString base = QFileInfo(path).fileName();

  auto* const icon = new QLabel;
  icon->setPixmap(applicationPixmap(applicationIcon({base}), iconSide, devicePixelRatioF()));

  auto* const name = new QLabel(base);
  auto* const what = new QLabel(purpose(capability));
  if (const auto since = store_.since(executable, capability)) {
    const auto time = QDateTime::fromSecsSinceEpoch(since->time_since_epoch().count());
    what->setText(
        tr("%1\nsince %2").arg(what->text(), QLocale().toString(time, QLocale::ShortFormat)));
  }
  auto* const where = new QLabel;
  QFont small = where->font();
  small.setPointSizeF(small.pointSizeF() * 0.9);
  where->setFont(small);
  where->setForegroundRole(QPalette::PlaceholderText);
  where->setText(QFontMetrics(small).elidedText(path, Qt::ElideMiddle, pathWidth));
  QFont bold = name->font();
  bold.setBold(true);
  name->setFont(bold);
  for (QLabel* const label : {name, what, where}) label->setTextFormat(Qt::PlainText);

  where->setToolTip(plainToolTip(path));
  auto* const revoke = new QPushButton(tr("Revoke"));
  revoke->setAccessibleDescription(path + QStringLiteral(": ") + purpose(capability));
  connect(revoke, &QPushButton::clicked, this,
          [this, executable, capability] { tell(store_.revoke(executable, capability)); });

  auto* const text = new QVBoxLayout;
  text->setSpacing(1);
  text->addWidget(name);
  text->addWidget(what);
  text->addWidget(where);
  auto* const widget = new QWidget;
  auto* const line = new QHBoxLayout(widget);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(12);
  line->addWidget(icon);
  line->addLayout(text, 1);
  line->addWidget(revoke);
  return widget;
}

void PrivacyWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) close();
}

}  // namespace tarnwick::bar
