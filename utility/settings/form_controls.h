#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <optional>

#include "core/ports/workspace.h"

namespace tarnwick {

// Controls of a form of cards, drawn alike in the tones of the palette. Around each there is room
// for a ring, which shows the focus: what a key would press.

inline constexpr int ringRoom = 3;  // points on each side

// On or off, beside a text and perhaps an icon, which belong to what can be pressed.
class Switch : public QCheckBox {
  Q_OBJECT

 public:
  enum class Place {
    leading,   // before its text
    trailing,  // at the far end of the row
  };

  Switch(const QString& label, Place place, QWidget* parent = nullptr);

  // Keeps a place of 18 points for the icon, also for none.
  void setLabelIcon(const std::optional<ThemeIcon>& icon);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& position) const override { return rect().contains(position); }

 private:
  QString label_;
  Place place_;
  bool hasIcon_ = false;
  std::optional<ThemeIcon> themeIcon_;
  std::optional<QIcon> icon_;  // looked up when first drawn
};

class FormButton : public QPushButton {
  Q_OBJECT

 public:
  explicit FormButton(const QString& label, QWidget* parent = nullptr);
  // Filled with the accent: the choice that Return makes.
  void setProminent() { isProminent_ = true; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool isProminent_ = false;
};

// One of a few choices.
class Picker : public QComboBox {
  Q_OBJECT

 public:
  explicit Picker(const QString& accessibleName, QWidget* parent = nullptr);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;  // scrolls the form
};

// A line of text with a rounded border.
class Field : public QLineEdit {
  Q_OBJECT

 public:
  Field(int width, const QString& accessibleName, QWidget* parent = nullptr);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void focusOutEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  int width_;
};

// A field for a whole number in the user's own digits. What is typed counts when Return is pressed
// or the focus leaves; what is no number is taken back.
class NumberField : public Field {
  Q_OBJECT

 public:
  NumberField(int width, const QString& accessibleName, QWidget* parent = nullptr);
  void setValue(int value);
  // As if Return were pressed.
  void commit();

 signals:
  void entered(int value);
  void stepped(int by);  // with the arrow keys

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  int value_ = 0;
};

// Up and down, one above the other. For the pointer: the field beside it knows the arrow keys.
class Stepper : public QWidget {
  Q_OBJECT

 public:
  explicit Stepper(QWidget* parent = nullptr);
  // Which of the two directions can be gone.
  void setEnds(bool canIncrease, bool canDecrease);

 signals:
  void stepped(int by);

 private:
  QAbstractButton* up_;
  QAbstractButton* down_;
};

}  // namespace tarnwick
