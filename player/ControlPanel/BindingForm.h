// Edits one binding.
#pragma once

#include "player/Control/Binding.h"

#include <QWidget>
#include <array>

class QComboBox;
class QDoubleSpinBox;
class QFormLayout;
class QLineEdit;
class QSpinBox;

namespace tarnwick::player {

class TargetBox;

class BindingForm : public QWidget {
    Q_OBJECT

  public:
    explicit BindingForm(QWidget* parent = nullptr);

    void setParams(std::span<const ParamDecl> params);
    void show(const Binding& binding);
    Binding binding() const;

  signals:
    void edited();

  private:
    void addSource();
    void addTarget();
    void addRanges();
    void addMIDI();
    QWidget* pair(const std::array<QDoubleSpinBox*, 2>& ends, const QString& name);
    void showFields(); // those that the kind of source has
    void edit();

    bool isShowing_ = false;
    QFormLayout* form_;
    QComboBox *kind_, *curve_, *button_, *encoding_, *pickup_;
    QLineEdit *address_, *episode_;
    QSpinBox *argument_, *channel_, *number_;
    QDoubleSpinBox* step_;
    TargetBox* target_;
    std::array<QDoubleSpinBox*, 2> input_, output_;
    QWidget *inputRow_, *outputRow_;
};

} // namespace tarnwick::player
