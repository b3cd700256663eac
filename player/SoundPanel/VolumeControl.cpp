#include "player/SoundPanel/VolumeControl.h"

#include "player/SoundPanel/SoundControls.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>
#include <QToolButton>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr int percent = 100;
constexpr int sliderWidth = 12; // characters

} // namespace

VolumeControl::VolumeControl(SoundControls& sound, QWidget* parent)
    : QWidget(parent), sound_(sound) {
    mute_ = new QToolButton;
    mute_->setCheckable(true);
    mute_->setAutoRaise(true);
    mute_->setAccessibleName(tr("Mute"));
    volume_ = new QSlider(Qt::Horizontal);
    volume_->setRange(0, percent);
    volume_->setPageStep(percent / 10);
    volume_->setFixedWidth(sliderWidth * fontMetrics().averageCharWidth());
    volume_->setAccessibleName(tr("Volume"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Maximum);
    row->addWidget(mute_);
    row->addWidget(volume_);
    connect(mute_, &QToolButton::toggled, &sound_, &SoundControls::setMuted);
    connect(volume_, &QSlider::valueChanged, this, [this](int value) {
        SoundVolume changed = sound_.volume();
        changed.all = static_cast<float>(value) / percent;
        changed.isMuted = false;
        sound_.setVolume(changed);
    });
    connect(&sound_, &SoundControls::volumeChanged, this, &VolumeControl::show);
    show();
}

void VolumeControl::show() {
    const QSignalBlocker mute(mute_), volume(volume_);
    const SoundVolume& shown = sound_.volume();
    mute_->setChecked(shown.isMuted);
    mute_->setIcon(style()->standardIcon(shown.isMuted ? QStyle::SP_MediaVolumeMuted
                                                       : QStyle::SP_MediaVolume));
    mute_->setToolTip(shown.isMuted ? tr("Sound on") : tr("Mute"));
    volume_->setValue(static_cast<int>(std::lround(shown.all * percent)));
    volume_->setToolTip(tr("Volume: %1%").arg(volume_->value()));
}

} // namespace tarnwick::player
