#include "utility/settings/hidden_apps_section.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <algorithm>
#include <utility>
#include "common/look/tool_tip.h"

namespace tarnwick {

namespace {

constexpr int groupFieldWidth = 110;

}  // namespace

HiddenAppsSection::HiddenAppsSection(std::shared_ptr<SettingsView> view, QWidget* before,
                                     QWidget* parent)
    : FormSection(tr("Hidden apps"), parent),
      view_(std::move(view)),
      before_(before),
      empty_(new Note(tr("No third-party menu bar apps found."), contentWidth,
                      Note::Style::secondary)),
      rescan_(new FormButton(tr("Rescan"))) {
  QHBoxLayout* const empty = addRow();
  empty->addSpacing(ringRoom);
  empty->addWidget(empty_);
  empty->addStretch();
  QHBoxLayout* const rescan = addRow();
  rescan->addWidget(rescan_);
  rescan->addStretch();
  connect(rescan_, &QAbstractButton::clicked, this, [this] { view_->rescan(); });
}

void HiddenAppsSection::sync() {
  const bool same =
      std::equal(rows_.begin(), rows_.end(), view_->candidates().begin(), view_->candidates().end(),
                 [](const Row& row, const CandidateApp& app) { return row.app == app; });
  if (!same) rebuild();
  empty_->parentWidget()->setVisible(rows_.empty());
  for (Row& row : rows_) {
    const bool hidden = view_->binding(row.app.bundleId).get();
    {
      const QSignalBlocker quiet(row.hidden);
      row.hidden->setChecked(hidden);
    }
    if (hidden && !row.group) row.group = makeGroupField(row);
    if (!row.group) continue;
    row.group->setVisible(hidden);
    const auto name = QString::fromStdString(view_->groupBinding(row.app.bundleId).get());
    if (name != row.group->text()) row.group->setText(name);
  }
}

void HiddenAppsSection::rebuild() {
  for (const Row& row : rows_) removeRow(row.hidden);
  rows_.clear();
  QWidget* before = before_;
  int index = 1;  // after the text for an empty list
  for (const CandidateApp& app : view_->candidates()) {
    const QString name = QString::fromStdString(app.name);
    auto* const hidden = new Switch(name, Switch::Place::leading);
    hidden->setLabelIcon(app.icon);
    hidden->setToolTip(plainToolTip(name));
    connect(hidden, &QAbstractButton::clicked, this,
            [binding = view_->binding(app.bundleId)](bool on) { binding.set(on); });
    QHBoxLayout* const row = addRow(index++);
    row->addWidget(hidden);
    row->addStretch();
    setTabOrder(before, hidden);
    before = hidden;
    hidden->parentWidget()->show();  // now, so that it can be the first to get the focus
    rows_.push_back({app, hidden});
  }
  setTabOrder(before, rescan_);
}

Field* HiddenAppsSection::makeGroupField(const Row& row) {
  auto* const field = new Field(groupFieldWidth, tr("Group %1").arg(row.hidden->accessibleName()));
  field->setPlaceholderText(tr("Group"));
  connect(field, &QLineEdit::textEdited, this,
          [binding = view_->groupBinding(row.app.bundleId)](const QString& text) {
            binding.set(text.toStdString());
          });
  row.hidden->parentWidget()->layout()->addWidget(field);
  setTabOrder(row.hidden, field);
  return field;
}

}  // namespace tarnwick
