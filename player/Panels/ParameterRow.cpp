#include "player/Panels/ParameterRow.h"

#include "player/Panels/ElidedLabel.h"
#include "player/Panels/PageWheel.h"
#include "player/Panels/RangeStrip.h"

#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QSlider>
#include <QToolButton>
#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr int sliderSteps = 1000;
constexpr int fewestDecimals = 3, mostDecimals = 7;

double spanOf(const ParamDecl& param) {
    return static_cast<double>(param.max) - param.min;
}

int stepOf(const ParamDecl& param, float value) {
    const double share = (value - param.min) / spanOf(param);
    return std::isfinite(share)
               ? static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * sliderSteps))
               : 0;
}

double valueOf(const ParamDecl& param, int step) {
    return param.min + spanOf(param) * step / sliderSteps;
}

// A thousandth of the range can be entered.
int decimalsOf(const ParamDecl& param) {
    const double wanted = fewestDecimals - std::floor(std::log10(spanOf(param)));
    return std::isfinite(wanted)
               ? static_cast<int>(std::clamp<double>(wanted, fewestDecimals, mostDecimals))
               : fewestDecimals;
}

} // namespace

ParameterRow::ParameterRow(const ParamDecl& param, QWidget* parent)
    : QWidget(parent), param_(param) {
    makeControls();
    setParam(param);
    connect(slider_, &QSlider::valueChanged, this,
            [this](int step) { choose(valueOf(param_, step)); });
    connect(slider_, &QSlider::sliderReleased, this, &ParameterRow::released);
    connect(entry_, &QDoubleSpinBox::valueChanged, this, &ParameterRow::choose);
    connect(key_, &QToolButton::clicked, this, &ParameterRow::keyToggled);
    connect(reset_, &QToolButton::clicked, this, &ParameterRow::resetWanted);
    connect(range_, &RangeStrip::numbersChosen, this, &ParameterRow::numbersChosen);
}

void ParameterRow::makeControls() {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 6);
    grid->setVerticalSpacing(2);
    label_ = new ElidedLabel;
    QFont bold = label_->font();
    bold.setBold(true);
    label_->setFont(bold);
    description_ = new ElidedLabel; // what the name leaves
    description_->setForegroundRole(QPalette::PlaceholderText);
    description_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    slider_ = new QSlider(Qt::Horizontal);
    slider_->setRange(0, sliderSteps);
    entry_ = new QDoubleSpinBox;
    entry_->setKeyboardTracking(false);
    entry_->setDecimals(fewestDecimals); // rows of most parameters are equally wide
    entry_->setMinimumWidth(entry_->sizeHint().width());
    key_ = new QToolButton;
    key_->setText(QStringLiteral("\u25C6"));
    key_->setCheckable(true);
    key_->setToolTip(tr("Key at the present time"));
    reset_ = new QToolButton;
    reset_->setText(QStringLiteral("\u21BA"));
    reset_->setToolTip(tr("Default value, without keys"));
    range_ = new RangeStrip;
    auto* words = new QHBoxLayout;
    words->setSpacing(6);
    words->addWidget(label_);
    words->addWidget(description_, 1);
    grid->addLayout(words, 0, 0, 1, 4);
    grid->addWidget(slider_, 1, 0);
    grid->addWidget(entry_, 1, 1);
    grid->addWidget(key_, 1, 2);
    grid->addWidget(reset_, 1, 3);
    grid->addWidget(range_, 2, 0);
    grid->setColumnStretch(0, 1);
    for (QWidget* control : {static_cast<QWidget*>(slider_), static_cast<QWidget*>(entry_)})
        leaveWheelToPage(*control);
}

void ParameterRow::setParam(const ParamDecl& param) {
    param_ = param;
    isShowing_ = true;
    const QString name = QString::fromStdString(param.name);
    const QString detail = QString::fromStdString(param.detail);
    label_->setText(name);
    label_->setToolTip(detail.isEmpty() ? name : name + QStringLiteral(": ") + detail);
    description_->setText(detail);
    description_->setToolTip(detail);
    slider_->setAccessibleName(name);
    slider_->setAccessibleDescription(detail);
    entry_->setDecimals(decimalsOf(param));
    entry_->setRange(param.min, param.max);
    entry_->setSingleStep(spanOf(param) / 100);
    entry_->setAccessibleName(tr("Value of %1").arg(name));
    key_->setAccessibleName(tr("Key of %1").arg(name));
    reset_->setAccessibleName(tr("Reset %1").arg(name));
    range_->setParam(param);
    isShowing_ = false;
}

void ParameterRow::choose(double value) {
    if (!isShowing_)
        emit valueChosen(value);
}

void ParameterRow::showState(const State& state) {
    isShowing_ = true;
    if (!slider_->isSliderDown())
        slider_->setValue(stepOf(param_, state.value));
    if (!entry_->hasFocus() || slider_->isSliderDown())
        entry_->setValue(state.value);
    key_->setChecked(state.hasKey);
    reset_->setEnabled(state.canReset);
    range_->setValue(state.value);
    isShowing_ = false;
}

} // namespace tarnwick::player
