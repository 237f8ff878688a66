#include "bar/access/access_dialog.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "common/look/application_icon.h"
#include "common/look/tool_tip.h"

namespace tarnwick::bar {

namespace {

constexpr int textWidth = 380;  // points
constexpr int iconSide = 48;    // points

QLabel* plainLabel(const QString& text) {
  auto* const label = new QLabel(text);
  // What a program says of itself is never markup.
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setFixedWidth(textWidth);
  return label;
}

// One line in small, dimmed type, cut in its middle, whole in its tool tip.
QLabel* detailLabel(const QString& text) {
  auto* const label = plainLabel({});
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * 0.9);
  label->setFont(font);
  label->setForegroundRole(QPalette::PlaceholderText);
  label->setText(QFontMetrics(font).elidedText(text.simplified(), Qt::ElideMiddle, textWidth));
  label->setToolTip(plainToolTip(text.left(1'000)));
  return label;
}

}  // namespace

AccessDialog::AccessDialog(const Subject& subject, Capability capability)
    : QWidget(nullptr, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                           Qt::CustomizeWindowHint | Qt::WindowStaysOnTopHint) {
  const QString name =
      (subject.name.isEmpty() ? QFileInfo(subject.executable).fileName() : subject.name)
          .left(100)
          .simplified();
  const bool pictures = capability == Capability::screenCapture;
  setWindowTitle(pictures ? tr("Screen Capture") : tr("Accessibility"));

  auto* const icon = new QLabel;
  icon->setPixmap(
      applicationPixmap(applicationIcon({subject.icon}), iconSide, devicePixelRatioF()));
  icon->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
  icon->setFixedWidth(iconSide);

  auto* const headline = plainLabel(
      pictures
          ? tr("“%1” would like to take pictures of other applications’ status items.").arg(name)
          : tr("“%1” would like to control other applications’ status items.").arg(name));
  QFont bold = headline->font();
  bold.setBold(true);
  headline->setFont(bold);

  auto* const meaning = plainLabel(
      pictures ? tr("It could see what they show, also while they are out of view.")
               : tr("It could list them, open their menus and move them within the bar."));
  auto* const later = plainLabel(tr("You can take this back in the bar’s privacy window."));

  auto* const deny = new QPushButton(tr("Don’t Allow"));
  auto* const allow = new QPushButton(tr("Allow"));
  deny->setAutoDefault(false);
  allow->setAutoDefault(false);
  connect(deny, &QPushButton::clicked, this, [this] { emit answered(false); });
  connect(allow, &QPushButton::clicked, this, [this] { emit answered(true); });

  auto* const text = new QVBoxLayout;
  text->setSpacing(6);
  text->addWidget(headline);
  text->addWidget(meaning);
  text->addSpacing(4);
  text->addWidget(detailLabel(subject.executable));
  if (!subject.commandLine.isEmpty() && subject.commandLine != subject.executable) {
    text->addWidget(detailLabel(subject.commandLine));
  }
  text->addSpacing(4);
  text->addWidget(later);

  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(deny);
  buttons->addWidget(allow);

  auto* const top = new QHBoxLayout;
  top->setSpacing(16);
  top->addWidget(icon);
  top->addLayout(text);

  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(20, 20, 20, 16);
  all->setSpacing(16);
  all->addLayout(top);
  all->addLayout(buttons);
  all->setSizeConstraint(QLayout::SetFixedSize);
  deny->setFocus();

  adjustSize();
  const QRect free = QGuiApplication::primaryScreen()->availableGeometry();
  move(free.center().x() - width() / 2, free.top() + free.height() / 4);
}

void AccessDialog::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void AccessDialog::closeEvent(QCloseEvent* event) {
  event->accept();
  emit answered(false);
}

}  // namespace tarnwick::bar
