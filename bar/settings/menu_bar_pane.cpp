#include "bar/settings/menu_bar_pane.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>

namespace tarnwick::bar {

MenuBarPane::MenuBarPane(BarSettings& settings)
    : settings_(settings),
      hours_(new QComboBox),
      iconSide_(new QComboBox),
      date_(new QCheckBox(tr("Show the date"))),
      applicationName_(new QCheckBox(tr("Show the active application’s name"))) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(tr("Menu Bar"));

  hours_->addItem(tr("As in this region"), static_cast<int>(ClockHours::locale));
  hours_->addItem(tr("12 hours"), static_cast<int>(ClockHours::twelve));
  hours_->addItem(tr("24 hours"), static_cast<int>(ClockHours::twentyFour));
  for (const int side : iconSides) iconSide_->addItem(tr("%1 points").arg(side), side);

  auto* const form = new QFormLayout(this);
  form->setContentsMargins(24, 20, 24, 20);
  form->setHorizontalSpacing(16);
  form->setVerticalSpacing(10);
  form->setLabelAlignment(Qt::AlignRight);
  form->addRow(tr("Clock:"), hours_);
  form->addRow(QString(), date_);
  form->addRow(tr("Icons:"), iconSide_);
  form->addRow(QString(), applicationName_);
  form->setSizeConstraint(QLayout::SetFixedSize);

  present(settings_.options());
  connect(&settings_, &BarSettings::changed, this, [this] { present(settings_.options()); });
  const auto choose = [this] { settings_.set(chosen()); };
  connect(hours_, &QComboBox::activated, this, choose);
  connect(iconSide_, &QComboBox::activated, this, choose);
  connect(date_, &QCheckBox::clicked, this, choose);
  connect(applicationName_, &QCheckBox::clicked, this, choose);
}

void MenuBarPane::present(const BarOptions& options) {
  hours_->setCurrentIndex(hours_->findData(static_cast<int>(options.clockHours)));
  iconSide_->setCurrentIndex(iconSide_->findData(options.iconSide));
  date_->setChecked(options.showDate);
  applicationName_->setChecked(options.showApplicationName);
}

BarOptions MenuBarPane::chosen() const {
  return {static_cast<ClockHours>(hours_->currentData().toInt()), date_->isChecked(),
          applicationName_->isChecked(), iconSide_->currentData().toInt()};
}

void MenuBarPane::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) close();
}

}  // namespace tarnwick::bar
