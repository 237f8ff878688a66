#include "utility/settings/settings_form.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <algorithm>
#include <iterator>
#include <utility>

#include "core/settings/settings_texts.h"
#include "utility/style/slim_scroll_bar.h"
#include "utility/style/warning_triangle.h"

namespace tarnwick {

namespace {

constexpr int sideMargin = 20;
constexpr int topMargin = 20;
constexpr int sectionSpacing = 22;
constexpr int numberFieldWidth = 48;
constexpr int triangleHeight = 18;
constexpr int triangleSpacing = 10;
constexpr int noteMargin = 10;  // above and below text that wraps

void addNote(QHBoxLayout* row, Note* note) {
  row->setContentsMargins(row->contentsMargins() + QMargins(ringRoom,
                                                            noteMargin - FormSection::rowMargin, 0,
                                                            noteMargin - FormSection::rowMargin));
  row->addWidget(note);
  row->addStretch();
}

void addButton(FormSection& section, FormButton* button) {
  QHBoxLayout* const row = section.addRow();
  row->addWidget(button);
  row->addStretch();
}

template <class Style, std::size_t count>
int indexOf(const StyleInfo<Style> (&styles)[count], Style style) {
  const auto found = std::find_if(std::begin(styles), std::end(styles),
                                  [style](const auto& info) { return info.style == style; });
  return static_cast<int>(found - std::begin(styles));
}

template <class Style, std::size_t count>
Picker* makePicker(const QString& title, const QString& meaning,
                   const StyleInfo<Style> (&styles)[count], std::function<void(Style)> chosen) {
  auto* const picker = new Picker(title);
  picker->setToolTip(meaning);
  picker->setAccessibleDescription(meaning);
  for (const auto& info : styles)
    picker->addItem(QCoreApplication::translate("Preferences", info.label));
  QObject::connect(picker, &QComboBox::currentIndexChanged, picker,
                   [&styles, chosen = std::move(chosen)](int index) {
                     if (index >= 0) chosen(styles[index].style);
                   });
  return picker;
}

void present(Picker& picker, int index) {
  const QSignalBlocker quiet(picker);
  picker.setCurrentIndex(index);
  picker.update();
}

}  // namespace

SettingsForm::SettingsForm(std::shared_ptr<SettingsView> view, const HotkeyRows& hotkeyRows)
    : view_(std::move(view)) {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(sideMargin, topMargin, sideMargin - SlimScrollBar::thickness,
                             topMargin);
  column->setSpacing(sectionSpacing);
  FormButton* const openSettings = addWarning();
  hiddenApps_ = new HiddenAppsSection(view_, openSettings, this);
  column->addWidget(hiddenApps_);
  addPanelSection();
  addSystemIconsSection();
  addHotkeysSection(hotkeyRows);
  addClosingSection();
  column->addStretch();
  sync();
}

QString SettingsForm::said(const char* fixed) const {
  return QCoreApplication::translate("SettingsView", view_->text(fixed));
}

FormSection* SettingsForm::addSection(const QString& header) {
  auto* const section = new FormSection(header, this);
  layout()->addWidget(section);
  return section;
}

FormButton* SettingsForm::addWarning() {
  warning_ = addSection({});
  QHBoxLayout* const row = warning_->addRow();
  row->addSpacing(ringRoom);
  auto* const triangle = new WarningTriangle(triangleHeight);
  row->addWidget(triangle);
  row->addSpacing(triangleSpacing - row->spacing());
  addNote(row, new Note(tr("Tarnwick needs Accessibility access to find and move menu "
                           "bar icons."),
                        FormSection::contentWidth - triangle->width() - triangleSpacing - 5,
                        Note::Style::normal));
  auto* const button = new FormButton(said(settingstexts::openSystemSettings));
  connect(button, &QAbstractButton::clicked, this, [this] { view_->openAccessibilitySettings(); });
  addButton(*warning_, button);
  return button;
}

void SettingsForm::addPanelSection() {
  FormSection* const section = addSection(tr("Panel"));

  const QString columnsTitle = tr("Icons per row");
  columns_ = new NumberField(numberFieldWidth, columnsTitle);
  stepper_ = new Stepper;
  section->addRow(columnsTitle, {columns_, stepper_});
  const auto step = [this](int by) {
    columns_->commit();
    const int columns = view_->panelColumns() + by;
    view_->setPanelColumns(
        std::clamp(columns, Preferences::minimumColumns, Preferences::maximumColumns));
  };
  connect(columns_, &NumberField::entered, this,
          [this](int typed) { view_->setPanelColumns(typed); });
  connect(columns_, &NumberField::stepped, this, step);
  connect(stepper_, &Stepper::stepped, this, step);

  const QString iconTitle = tr("Icon style");
  iconStyle_ = makePicker<PanelIconStyle>(
      iconTitle, tr("What the panel shows of each application"), panelIconStyles,
      [this](PanelIconStyle style) { view_->setIconStyle(style); });
  section->addRow(iconTitle, {iconStyle_});

  const QString handleTitle = tr("Menu bar icon");
  handleStyle_ = makePicker<HandleIconStyle>(
      handleTitle, tr("How Tarnwick’s own icon in the bar looks"), handleIconStyles,
      [this](HandleIconStyle style) { view_->setHandleStyle(style); });
  section->addRow(handleTitle, {handleStyle_});

  auto* const note =
      new Note(said(settingstexts::captureNote), FormSection::contentWidth, Note::Style::callout);
  addNote(section->addRow(), note);
  captureNote_ = note->parentWidget();
  auto* const button = new FormButton(said(settingstexts::openSystemSettings));
  connect(button, &QAbstractButton::clicked, this, [this] { view_->openCaptureSettings(); });
  addButton(*section, button);
  captureButton_ = button->parentWidget();
}

void SettingsForm::addSystemIconsSection() {
  FormSection* const section = addSection(said(settingstexts::systemIcons));
  addNote(section->addRow(), new Note(said(settingstexts::systemIconsNote),
                                      FormSection::contentWidth, Note::Style::secondary));
  auto* const button = new FormButton(tr("Open Menu Bar Settings…"));
  connect(button, &QAbstractButton::clicked, this, [this] { view_->openMenuBarSettings(); });
  addButton(*section, button);
}

void SettingsForm::addHotkeysSection(const HotkeyRows& rows) {
  const auto made = rows ? rows() : std::vector<HotkeyRow>();
  if (made.empty()) return;
  FormSection* const section = addSection(tr("Hotkeys"));
  for (const HotkeyRow& row : made) section->addRow(row.title, {row.recorder});
}

void SettingsForm::addClosingSection() {
  FormSection* const section = addSection({});
  launchAtLogin_ = new Switch(tr("Launch at login"), Switch::Place::trailing);
  QHBoxLayout* const login = section->addRow();
  login->setContentsMargins(login->contentsMargins() + QMargins(ringRoom, 0, 0, 0));
  login->addWidget(launchAtLogin_);
  connect(launchAtLogin_, &QAbstractButton::clicked, this,
          [this](bool on) { view_->setLaunchAtLogin(on); });

  auto* const version = new QLabel(QString::fromStdString(view_->versionDescription()));
  version->setTextFormat(Qt::PlainText);
  version->setForegroundRole(QPalette::PlaceholderText);
  version->setContentsMargins(0, 0, ringRoom, 0);
  section->addRow(tr("Version"), {version});

  auto* const restart = new FormButton(tr("Restart Tarnwick"));
  connect(restart, &QAbstractButton::clicked, this, [this] {
    columns_->commit();
    view_->restart();
  });
  addButton(*section, restart);
  auto* const quit = new FormButton(tr("Quit Tarnwick"));
  connect(quit, &QAbstractButton::clicked, this, &SettingsForm::quit);
  addButton(*section, quit);
}

void SettingsForm::quit() {
  columns_->commit();
  view_->quit();
}

void SettingsForm::sync() {
  warning_->setVisible(!view_->hasPermission());
  hiddenApps_->sync();
  columns_->setValue(view_->panelColumns());
  stepper_->setEnds(view_->panelColumns() < Preferences::maximumColumns,
                    view_->panelColumns() > Preferences::minimumColumns);
  present(*iconStyle_, indexOf(panelIconStyles, view_->iconStyle()));
  present(*handleStyle_, indexOf(handleIconStyles, view_->handleStyle()));
  for (QWidget* const row : {captureNote_, captureButton_}) {
    row->setVisible(view_->showsCaptureNote());
  }
  const QSignalBlocker quiet(launchAtLogin_);
  launchAtLogin_->setChecked(view_->launchAtLogin());
}

}  // namespace tarnwick
