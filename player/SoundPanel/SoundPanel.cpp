#include "player/SoundPanel/SoundPanel.h"

#include "player/SoundPanel/LevelMeter.h"
#include "player/SoundPanel/SoundControls.h"
#include "player/SoundPanel/VolumeControl.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>

namespace tarnwick::player {
namespace {

using Kind = SoundInput::Kind;

} // namespace

SoundPanel::SoundPanel(SoundControls& sound, QWidget* parent) : QWidget(parent), sound_(sound) {
    input_ = new QComboBox;
    input_->setAccessibleName(tr("Sound input"));
    input_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    file_ = new QLabel;
    file_->setTextFormat(Qt::PlainText);
    hearsFile_ = new QCheckBox(tr("Play the file"));
    delay_ = new QSpinBox;
    delay_->setRange(-SoundControls::longestDelay, SoundControls::longestDelay);
    delay_->setSingleStep(10);
    delay_->setSuffix(tr(" ms"));
    delay_->setAccessibleName(tr("Delay of the sound device"));
    delay_->setToolTip(
        tr("Time by which the sound device, such as wireless headphones, is late. The "
           "sound is played earlier by it."));
    auto* rows = new QFormLayout(this);
    rows->addRow(tr("Volume"), new VolumeControl(sound_));
    rows->addRow(tr("Device delay"), delay_);
    rows->addRow(tr("Input"), input_);
    rows->addRow(file_);
    rows->addRow(hearsFile_);
    rows->addRow(new LevelMeter(sound_.levels()));
    connect(input_, &QComboBox::activated, this, &SoundPanel::takeInput);
    connect(hearsFile_, &QCheckBox::toggled, this, [this](bool isOn) {
        SoundVolume changed = sound_.volume();
        changed.hasFile = isOn;
        sound_.setVolume(changed);
    });
    connect(delay_, &QSpinBox::valueChanged, &sound_, &SoundControls::setDelay);
    connect(&sound_, &SoundControls::volumeChanged, this, &SoundPanel::show);
    connect(&sound_, &SoundControls::inputChanged, this, &SoundPanel::show);
    connect(&sound_, &SoundControls::devicesFound, this, &SoundPanel::show);
    show();
}

void SoundPanel::showEvent(QShowEvent*) {
    sound_.findDevices();
}

// Each entry has the kind and the name of the device.
void SoundPanel::fillInputs() {
    input_->clear();
    const auto add = [this](const QString& text, Kind kind, const QString& name = {}) {
        input_->addItem(text, QVariantList{static_cast<int>(kind), name});
    };
    add(tr("Own sound"), Kind::own);
    add(tr("Microphone"), Kind::microphone);
    for (const QString& device : sound_.devices())
        add(device, Kind::microphone, device);
    add(tr("Desktop's sound"), Kind::desktop);
    add(tr("Sound file..."), Kind::file);
}

void SoundPanel::takeInput(int index) {
    const QVariantList entry = input_->itemData(index).toList();
    const auto kind = static_cast<Kind>(entry[0].toInt());
    if (kind == Kind::file)
        sound_.chooseFile();
    else
        sound_.setInput({.kind = kind, .name = entry[1].toString().toStdString()});
}

void SoundPanel::show() {
    const QSignalBlocker input(input_), hears(hearsFile_), delay(delay_);
    const SoundInput& chosen = sound_.input();
    const bool isFile = chosen.kind == Kind::file;
    const QString name = QString::fromStdString(chosen.name);
    fillInputs();
    const int index =
        input_->findData(QVariantList{static_cast<int>(chosen.kind), isFile ? QString() : name});
    input_->setCurrentIndex(index);
    file_->setText(QFileInfo(name).fileName());
    file_->setVisible(isFile);
    hearsFile_->setVisible(isFile);
    hearsFile_->setChecked(sound_.volume().hasFile);
    delay_->setValue(sound_.delay());
}

} // namespace tarnwick::player
