#include "utility/settings/alert_box.h"

#include <QAccessible>
#include <QDialog>
#include <QHBoxLayout>
#include <QPainter>
#include <QPointer>
#include <utility>

#include "core/shortcuts/localized.h"
#include "utility/settings/form_controls.h"
#include "utility/settings/form_section.h"
#include "utility/style/warning_triangle.h"

namespace tarnwick {

namespace {

constexpr int margin = 20;
constexpr int triangleHeight = 36;
constexpr int triangleSpacing = 16;
constexpr int textWidth = 320;
constexpr int messageSpacing = 8;
constexpr int buttonsSpacing = 18;
constexpr int buttonSpacing = 8;
constexpr int leastButtonWidth = 80;

class AlertBox : public QDialog {
 public:
  AlertBox(QWidget& window, const Alert& alert)
      : QDialog(&window, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                             Qt::WindowCloseButtonHint) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_WindowPropagation);
    setWindowModality(Qt::WindowModal);
    setWindowTitle(window.windowTitle());
    const QString title = QString::fromStdString(alert.title);
    const QString message = QString::fromStdString(alert.message);
    setAccessibleName(title);
    setAccessibleDescription(message);

    auto* const columns = new QHBoxLayout(this);
    columns->setSizeConstraint(QLayout::SetFixedSize);
    columns->setContentsMargins(margin, margin, margin - ringRoom, margin - ringRoom);
    columns->setSpacing(triangleSpacing);
    columns->addWidget(new WarningTriangle(triangleHeight), 0, Qt::AlignTop);
    auto* const column = new QVBoxLayout;
    columns->addLayout(column);
    column->setSpacing(messageSpacing);
    auto* const heading = new Note(title, textWidth, Note::Style::normal);
    QFont bold = heading->font();
    bold.setWeight(QFont::DemiBold);
    heading->setFont(bold);
    column->addWidget(heading);
    if (!message.isEmpty()) column->addWidget(new Note(message, textWidth, Note::Style::secondary));
    column->addSpacing(buttonsSpacing - messageSpacing - ringRoom);
    addButtons(*column, alert.buttons);
  }

  int answer() const { return answer_; }

 protected:
  // The ground that the controls are made for.
  void paintEvent(QPaintEvent*) override {
    QPainter(this).fillRect(rect(), tonesOf(palette()).card);
  }

  void showEvent(QShowEvent* event) override {
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
    QDialog::showEvent(event);
  }

 private:
  // The first one last, where the eye ends.
  void addButtons(QVBoxLayout& column, const std::vector<std::string>& titles) {
    auto* const row = new QHBoxLayout;
    column.addLayout(row);
    row->setDirection(QBoxLayout::RightToLeft);
    row->setSpacing(buttonSpacing - 2 * ringRoom);
    const auto add = [&](const QString& title, int number) {
      auto* const button = new FormButton(title);
      button->setMinimumWidth(leastButtonWidth + 2 * ringRoom);
      connect(button, &QAbstractButton::clicked, this, [this, number] {
        answer_ = number;
        accept();
      });
      row->addWidget(button);
      return button;
    };
    using KeyboardShortcuts::localized;
    FormButton* const first =
        add(QString::fromStdString(titles.empty() ? localized("ok") : titles.front()),
            alertFirstButton);
    for (std::size_t i = 1; i < titles.size(); ++i) {
      add(QString::fromStdString(titles[i]), alertFirstButton + static_cast<int>(i));
    }
    row->addStretch();
    first->setProminent();
    first->setDefault(true);
    first->setFocus();
  }

  int answer_ = alertFirstButton;
};

}  // namespace

Registration presentAlert(QWidget& window, const Alert& alert, std::function<void(int)> answered) {
  auto* const box = new AlertBox(window, alert);
  QObject::connect(
      box, &QDialog::finished, &window, [box, window = &window, answered = std::move(answered)] {
        QMetaObject::invokeMethod(
            window, [answered, answer = box->answer()] { answered(answer); }, Qt::QueuedConnection);
      });
  box->open();
  return Registration([box = QPointer<QDialog>(box)] {
    if (box) box->deleteLater();
  });
}

}  // namespace tarnwick
