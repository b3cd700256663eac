#include "player/ControlPanel/ConnectionsView.h"

#include "player/Control/NetworkAddresses.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSpinBox>
#include <QVBoxLayout>

namespace tarnwick::player {
namespace {

QSpinBox* portBox(const QString& name) {
    auto* box = new QSpinBox;
    box->setRange(1, 65535);
    box->setKeyboardTracking(false);
    box->setAccessibleName(name);
    return box;
}

} // namespace

ConnectionsView::ConnectionsView(LiveControl& control, QWidget* parent)
    : QWidget(parent), control_(control) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(4, 4, 4, 4);
    row->addWidget(inputBox());
    row->addWidget(outputBox());
    row->addWidget(midiBox(), 1);
    connect(&control_, &LiveControl::changed, this, &ConnectionsView::showState);
    showState();
}

QWidget* ConnectionsView::inputBox() {
    auto* box = new QGroupBox(tr("OSC input"));
    auto* form = new QFormLayout(box);
    listens_ = new QCheckBox(tr("Listen on UDP"));
    inputPort_ = portBox(tr("Port of the OSC input"));
    address_ = new QComboBox;
    address_->setAccessibleName(tr("Network interface of the OSC input"));
    inputState_ = new QLabel;
    inputState_->setWordWrap(true);
    form->addRow(listens_);
    form->addRow(tr("Port"), inputPort_);
    form->addRow(tr("From"), address_);
    form->addRow(inputState_);
    listAddresses();
    connect(listens_, &QCheckBox::toggled, this, &ConnectionsView::setInput);
    connect(inputPort_, &QSpinBox::valueChanged, this, &ConnectionsView::setInput);
    connect(address_, &QComboBox::currentIndexChanged, this, &ConnectionsView::setInput);
    return box;
}

QWidget* ConnectionsView::outputBox() {
    auto* box = new QGroupBox(tr("OSC output"));
    auto* form = new QFormLayout(box);
    sends_ = new QCheckBox(tr("Send the sliders"));
    host_ = new QLineEdit;
    host_->setAccessibleName(tr("Host of the OSC output"));
    outputPort_ = portBox(tr("Port of the OSC output"));
    form->addRow(sends_);
    form->addRow(tr("To host"), host_);
    form->addRow(tr("Port"), outputPort_);
    connect(sends_, &QCheckBox::toggled, this, &ConnectionsView::setOutput);
    connect(host_, &QLineEdit::editingFinished, this, &ConnectionsView::setOutput);
    connect(outputPort_, &QSpinBox::valueChanged, this, &ConnectionsView::setOutput);
    return box;
}

QWidget* ConnectionsView::midiBox() {
    auto* box = new QGroupBox(tr("MIDI input"));
    auto* rows = new QVBoxLayout(box);
    midiState_ = new QLabel;
    midiState_->setWordWrap(true);
    ports_ = new QListWidget;
    ports_->setAccessibleName(tr("MIDI ports"));
    pickup_ = new QCheckBox(tr("Pickup: a knob moves its parameter once it has reached the "
                               "parameter's value"));
    rows->addWidget(midiState_);
    rows->addWidget(ports_, 1);
    rows->addWidget(pickup_);
    // Queued: the answer makes the items anew.
    connect(ports_, &QListWidget::itemChanged, this, &ConnectionsView::setPorts,
            Qt::QueuedConnection);
    connect(pickup_, &QCheckBox::toggled, this, [this](bool isOn) {
        MIDIChoice choice = control_.midi();
        choice.hasPickup = isOn;
        if (!isShowing_)
            control_.setMIDI(choice);
    });
    return box;
}

void ConnectionsView::listAddresses() {
    address_->addItem(tr("This machine"), QString::fromLatin1(loopbackAddress));
    address_->addItem(tr("Every network"), QString::fromLatin1(everyAddress));
    for (const NetworkAddress& one : networkAddresses()) {
        const QString address = QString::fromStdString(one.address);
        address_->addItem(tr("%1 (%2)").arg(QString::fromStdString(one.interface), address),
                          address);
    }
}

void ConnectionsView::showState() {
    isShowing_ = true;
    const OSCInput& input = control_.input();
    const QString address = QString::fromStdString(input.address);
    listens_->setChecked(input.isOn);
    inputPort_->setValue(input.port);
    if (address_->findData(address) < 0) // an interface that is not up now
        address_->addItem(address, address);
    address_->setCurrentIndex(address_->findData(address));
    inputState_->setText(input.isOn ? tr("Listening on port %1.").arg(input.port)
                                    : tr("Not listening."));
    const OSCOutput& output = control_.output();
    sends_->setChecked(output.isOn);
    if (!host_->hasFocus())
        host_->setText(QString::fromStdString(output.host));
    outputPort_->setValue(output.port);
    pickup_->setChecked(control_.midi().hasPickup);
    showPorts();
    isShowing_ = false;
}

void ConnectionsView::showPorts() {
    const MIDIState* state = control_.midiState();
    ports_->clear();
    if (state == nullptr) {
        midiState_->clear();
        return;
    }
    midiState_->setText(!state->hasSystem ? tr("This machine has no MIDI (the sequencer of ALSA).")
                        : state->ports.empty() ? tr("No MIDI device is connected.")
                                               : QString());
    midiState_->setVisible(!midiState_->text().isEmpty());
    for (const MIDIPortState& port : state->ports) {
        auto* item = new QListWidgetItem(QString::fromStdString(port.name), ports_);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(control_.midi().ignored.contains(port.name) ? Qt::Unchecked
                                                                        : Qt::Checked);
        item->setToolTip(QString::fromStdString(port.failure));
        if (!port.failure.empty())
            item->setText(tr("%1 (cannot be opened)").arg(item->text()));
        item->setData(Qt::UserRole, QString::fromStdString(port.name));
    }
}

void ConnectionsView::setInput() {
    if (isShowing_)
        return;
    control_.setInput({.isOn = listens_->isChecked(),
                       .port = static_cast<std::uint16_t>(inputPort_->value()),
                       .address = address_->currentData().toString().toStdString()});
}

void ConnectionsView::setOutput() {
    if (isShowing_)
        return;
    control_.setOutput({.isOn = sends_->isChecked(),
                        .host = host_->text().trimmed().toStdString(),
                        .port = static_cast<std::uint16_t>(outputPort_->value())});
}

void ConnectionsView::setPorts() {
    if (isShowing_)
        return;
    MIDIChoice choice = control_.midi();
    for (int row = 0; row < ports_->count(); ++row) {
        const std::string name = ports_->item(row)->data(Qt::UserRole).toString().toStdString();
        if (ports_->item(row)->checkState() == Qt::Checked)
            choice.ignored.erase(name);
        else
            choice.ignored.insert(name);
    }
    control_.setMIDI(choice);
}

} // namespace tarnwick::player
