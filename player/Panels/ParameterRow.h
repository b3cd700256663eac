// The controls of one parameter: name, description, slider, exact entry, key, reset, range.
#pragma once

#include "TarnwickCore/Params.h"

#include <QWidget>

class QDoubleSpinBox;
class QSlider;
class QToolButton;

namespace tarnwick::player {

class ElidedLabel;
class RangeStrip;

class ParameterRow : public QWidget {
    Q_OBJECT

  public:
    explicit ParameterRow(const ParamDecl& param, QWidget* parent = nullptr);

    const ParamDecl& param() const { return param_; }
    // Another declaration of the same name.
    void setParam(const ParamDecl& param);

    struct State {
        float value = 0;
        bool hasKey = false; // at the present time
        bool canReset = false;
    };
    // Emits no signals. Controls that are being used are left alone.
    void showState(const State& state);

  signals:
    void valueChosen(double value);
    void released(); // the slider
    void keyToggled();
    void resetWanted();
    void numbersChosen(const tarnwick::ParamNumbers& numbers);

  private:
    void makeControls();
    void choose(double value);

    ParamDecl param_;
    ElidedLabel* label_;
    ElidedLabel* description_;
    QSlider* slider_;
    QDoubleSpinBox* entry_;
    QToolButton* key_;
    QToolButton* reset_;
    RangeStrip* range_;
    bool isShowing_ = false; // the controls follow the document, not the other way round
};

} // namespace tarnwick::player
