#include "player/ControlPanel/BindingForm.h"

#include "player/ControlPanel/TargetBox.h"
#include "player/Panels/PageWheel.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSpinBox>
#include <algorithm>

namespace tarnwick::player {
namespace {

QSpinBox* numberBox(int least, int most) {
    auto* box = new QSpinBox;
    box->setRange(least, most);
    return box;
}

template <typename Case> QComboBox* choice(std::span<const CaseName<Case>> names) {
    auto* box = new QComboBox;
    for (const CaseName<Case>& name : names)
        box->addItem(QString::fromUtf8(name.label.data(), static_cast<int>(name.label.size())),
                     static_cast<int>(name.one));
    return box;
}

template <typename Case> Case chosen(const QComboBox* box) {
    return static_cast<Case>(box->currentData().toInt());
}

template <typename Case> void choose(QComboBox* box, Case one) {
    box->setCurrentIndex(box->findData(static_cast<int>(one)));
}

constexpr int oscKind = -1; // beside the kinds of MIDI
constexpr int asAll = -1;   // beside yes and no
constexpr float percent = 100;

} // namespace

BindingForm::BindingForm(QWidget* parent) : QWidget(parent), form_(new QFormLayout(this)) {
    form_->setContentsMargins(4, 4, 4, 4);
    addSource();
    addTarget();
    addRanges();
    addMIDI();
    for (auto* box : findChildren<QComboBox*>())
        leaveWheelToPage(*box);
    for (auto* box : findChildren<QAbstractSpinBox*>())
        leaveWheelToPage(*box);
    for (QComboBox* box : {kind_, curve_, button_, encoding_, pickup_})
        connect(box, &QComboBox::currentIndexChanged, this, &BindingForm::edit);
    // Not at each letter, because a half-typed name is not a parameter.
    connect(target_, &QComboBox::activated, this, &BindingForm::edit);
    connect(target_->lineEdit(), &QLineEdit::editingFinished, this, &BindingForm::edit);
    for (QLineEdit* line : {address_, episode_})
        connect(line, &QLineEdit::editingFinished, this, &BindingForm::edit);
    for (QSpinBox* box : {argument_, channel_, number_})
        connect(box, &QSpinBox::valueChanged, this, &BindingForm::edit);
    for (QDoubleSpinBox* box : {input_[0], input_[1], output_[0], output_[1], step_})
        connect(box, &QDoubleSpinBox::valueChanged, this, &BindingForm::edit);
}

void BindingForm::addSource() {
    kind_ = choice(kindNames());
    kind_->insertItem(0, tr("OSC message"), oscKind);
    address_ = new QLineEdit;
    argument_ = numberBox(1, 1001);
    channel_ = numberBox(1, 16);
    number_ = numberBox(0, 127);
    form_->addRow(tr("Control"), kind_);
    form_->addRow(tr("Address"), address_);
    form_->addRow(tr("Number of the message"), argument_);
    form_->addRow(tr("Channel"), channel_);
    form_->addRow(tr("Number"), number_);
}

void BindingForm::addTarget() {
    target_ = new TargetBox;
    episode_ = new QLineEdit;
    episode_->setPlaceholderText(tr("Every episode"));
    form_->addRow(tr("Moves"), target_);
    form_->addRow(tr("Only in episode"), episode_);
}

void BindingForm::addRanges() {
    for (QDoubleSpinBox*& box : input_) {
        box = new QDoubleSpinBox;
        box->setRange(-1e6, 1e6);
        box->setDecimals(3);
    }
    for (QDoubleSpinBox*& box : output_) {
        box = new QDoubleSpinBox;
        box->setRange(0, percent);
        box->setDecimals(1);
        box->setSuffix(tr(" %"));
    }
    inputRow_ = pair(input_, tr("Numbers that arrive"));
    outputRow_ = pair(output_, tr("Range of the parameter"));
    curve_ = choice(curveNames());
    button_ = choice(buttonNames());
    form_->addRow(tr("Numbers that arrive"), inputRow_);
    form_->addRow(tr("Range of the parameter"), outputRow_);
    form_->addRow(tr("Curve"), curve_);
    form_->addRow(tr("Button"), button_);
}

void BindingForm::addMIDI() {
    encoding_ = choice(encodingNames());
    step_ = new QDoubleSpinBox;
    step_->setRange(0.01, percent);
    step_->setDecimals(2);
    step_->setSuffix(tr(" %"));
    step_->setKeyboardTracking(false);
    pickup_ = new QComboBox;
    pickup_->addItem(tr("As all bindings"), asAll);
    pickup_->addItem(tr("Always"), true);
    pickup_->addItem(tr("Never"), false);
    pickup_->setToolTip(tr("The control moves the parameter once it has reached its value"));
    form_->addRow(tr("Values"), encoding_);
    form_->addRow(tr("Step"), step_);
    form_->addRow(tr("Pickup"), pickup_);
}

QWidget* BindingForm::pair(const std::array<QDoubleSpinBox*, 2>& ends, const QString& name) {
    auto* row = new QWidget;
    auto* boxes = new QHBoxLayout(row);
    boxes->setContentsMargins(0, 0, 0, 0);
    for (QDoubleSpinBox* box : ends) {
        box->setKeyboardTracking(false);
        box->setAccessibleName(box == ends[0] ? tr("%1, lower end of the control").arg(name)
                                              : tr("%1, upper end of the control").arg(name));
        boxes->addWidget(box);
    }
    row->setFocusProxy(ends[0]);
    return row;
}

void BindingForm::setParams(std::span<const ParamDecl> params) {
    target_->setParams(params);
}

void BindingForm::show(const Binding& binding) {
    isShowing_ = true;
    if (const auto* osc = std::get_if<OSCControl>(&binding.source)) {
        kind_->setCurrentIndex(kind_->findData(oscKind));
        address_->setText(QString::fromStdString(osc->address));
        argument_->setValue(static_cast<int>(osc->argument) + 1);
    } else {
        const auto& midi = std::get<MIDIControl>(binding.source);
        choose(kind_, midi.kind);
        channel_->setValue(midi.channel + 1);
        number_->setValue(midi.number + (midi.kind == MIDIControl::Kind::program ? 1 : 0));
    }
    target_->setTarget(binding.target);
    episode_->setText(QString::fromStdString(binding.episode));
    for (std::size_t end = 0; end < 2; ++end) {
        input_[end]->setValue(static_cast<double>(binding.input[end]));
        output_[end]->setValue(static_cast<double>(binding.output[end] * percent));
    }
    choose(curve_, binding.curve);
    choose(button_, binding.button);
    choose(encoding_, binding.encoding);
    step_->setValue(static_cast<double>(binding.step * percent));
    pickup_->setCurrentIndex(
        pickup_->findData(binding.hasPickup ? QVariant(*binding.hasPickup) : QVariant(asAll)));
    showFields();
    isShowing_ = false;
}

Binding BindingForm::binding() const {
    Binding binding{.source = OSCControl{}, .target = target_->target()};
    if (kind_->currentData().toInt() == oscKind) {
        const QString address = address_->text().trimmed();
        binding.source = OSCControl{
            (address.startsWith('/') ? address : QStringLiteral("/") + address).toStdString(),
            static_cast<std::uint32_t>(argument_->value() - 1)};
    } else {
        const auto kind = chosen<MIDIControl::Kind>(kind_);
        const int first = kind == MIDIControl::Kind::program ? 1 : 0;
        binding.source =
            MIDIControl{kind, static_cast<std::uint8_t>(channel_->value() - 1),
                        static_cast<std::uint16_t>(
                            hasNumber(kind) ? std::max(number_->value() - first, 0) : 0)};
        if (kind == MIDIControl::Kind::controller) {
            binding.encoding = chosen<MIDIEncoding>(encoding_);
            binding.step = static_cast<float>(step_->value()) / percent;
        }
        if (pickup_->currentData() != asAll)
            binding.hasPickup = pickup_->currentData().toBool();
    }
    binding.episode = episode_->text().trimmed().toStdString();
    for (std::size_t end = 0; end < 2; ++end) {
        binding.input[end] = static_cast<float>(input_[end]->value());
        binding.output[end] = static_cast<float>(output_[end]->value()) / percent;
    }
    binding.curve = chosen<ControlCurve>(curve_);
    binding.button = chosen<ButtonMode>(button_);
    return binding;
}

void BindingForm::showFields() {
    const int kind = kind_->currentData().toInt();
    const bool isOSC = kind == oscKind;
    const bool isProgram = kind == static_cast<int>(MIDIControl::Kind::program);
    const bool isController = kind == static_cast<int>(MIDIControl::Kind::controller);
    const bool isRelative =
        isController && chosen<MIDIEncoding>(encoding_) != MIDIEncoding::absolute;
    const int most = isOSC ? 0 : mostNumber(chosen<MIDIControl::Kind>(kind_));
    const bool isPlace = !std::holds_alternative<TransportAction>(target_->target());
    number_->setRange(isProgram ? 1 : 0, isProgram ? most + 1 : most);
    for (QWidget* field :
         {static_cast<QWidget*>(address_), static_cast<QWidget*>(argument_), inputRow_})
        form_->setRowVisible(field, isOSC);
    form_->setRowVisible(channel_, !isOSC);
    form_->setRowVisible(number_, !isOSC && hasNumber(chosen<MIDIControl::Kind>(kind_)));
    form_->setRowVisible(button_, isPlace && !isRelative);
    form_->setRowVisible(curve_, !isRelative);
    form_->setRowVisible(encoding_, isController);
    form_->setRowVisible(step_, isRelative && isPlace);
    form_->setRowVisible(pickup_, !isOSC && isPlace && !isRelative);
}

void BindingForm::edit() {
    if (isShowing_)
        return;
    isShowing_ = true; // a changed range of numbers is no edit of its own
    showFields();
    isShowing_ = false;
    emit edited();
}

} // namespace tarnwick::player
