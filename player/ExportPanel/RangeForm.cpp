#include "player/ExportPanel/RangeForm.h"

#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <QRadioButton>

namespace tarnwick::player {
namespace {

constexpr double aDay = 24 * 3600; // seconds

} // namespace

QDoubleSpinBox* secondsBox(const QString& name, double most) {
    auto* box = new QDoubleSpinBox;
    box->setDecimals(3);
    box->setRange(0, most);
    box->setSingleStep(0.5);
    box->setSuffix(QObject::tr(" s"));
    box->setAccessibleName(name);
    return box;
}

RangeForm::RangeForm(double length, const std::optional<LoopRange>& loop, QWidget* parent)
    : QWidget(parent), length_(length), loop_(loop) {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    whole_ = new QRadioButton(tr("&Whole episode, %1 s").arg(length_));
    looped_ =
        new QRadioButton(loop_ ? tr("&Loop range, %1 s to %2 s").arg(loop_->start).arg(loop_->end)
                               : tr("&Loop range"));
    looped_->setEnabled(loop_.has_value());
    custom_ = new QRadioButton(tr("F&rom"));
    from_ = secondsBox(tr("From, in seconds"), aDay);
    to_ = secondsBox(tr("To, in seconds"), 2 * aDay);
    to_->setValue(length_);
    grid->addWidget(whole_, 0, 0, 1, 5);
    grid->addWidget(looped_, 1, 0, 1, 5);
    grid->addWidget(custom_, 2, 0);
    grid->addWidget(from_, 2, 1);
    grid->addWidget(new QLabel(tr("to")), 2, 2);
    grid->addWidget(to_, 2, 3);
    grid->setColumnStretch(4, 1);
    (loop_ ? looped_ : whole_)->setChecked(true);
    for (QRadioButton* button : {whole_, looped_, custom_})
        connect(button, &QRadioButton::toggled, this, &RangeForm::changed);
    for (QDoubleSpinBox* box : {from_, to_})
        connect(box, &QDoubleSpinBox::valueChanged, this, [this] {
            custom_->setChecked(true);
            emit changed();
        });
}

double RangeForm::start() const {
    if (custom_->isChecked())
        return from_->value();
    return looped_->isChecked() ? loop_->start : 0;
}

double RangeForm::duration() const {
    if (custom_->isChecked())
        return to_->value() - from_->value();
    return looped_->isChecked() ? loop_->end - loop_->start : length_;
}

void RangeForm::setRange(double start, double duration) {
    from_->setValue(start);
    to_->setValue(start + duration);
    custom_->setChecked(true);
}

} // namespace tarnwick::player
