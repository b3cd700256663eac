#include "player/SoundPanel/LevelMeter.h"

#include <QPainter>
#include <cmath>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int interval = 50;           // milliseconds between two looks at the levels
constexpr double spectrumShare = 0.72; // of the width; the levels have the rest

} // namespace

LevelMeter::LevelMeter(std::shared_ptr<const LiveLevels> levels, QWidget* parent)
    : QWidget(parent), levels_(std::move(levels)) {
    setAccessibleName(tr("Levels of the sound input"));
    setToolTip(tr("The spectrum, then the levels low, mid, high and all"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setMinimumHeight(sizeHint().height());
    connect(&timer_, &QTimer::timeout, this, &LevelMeter::look);
}

QSize LevelMeter::sizeHint() const {
    return {12 * fontMetrics().averageCharWidth(), 4 * fontMetrics().height()};
}

void LevelMeter::showEvent(QShowEvent*) {
    timer_.start(interval);
}

void LevelMeter::hideEvent(QHideEvent*) {
    timer_.stop();
}

void LevelMeter::look() {
    const auto newest = levels_->newest();
    const bool isSame = newest == shown_ || (newest && shown_ && *newest == *shown_);
    shown_ = newest;
    if (isSame)
        return;
    setAccessibleDescription(tr("%1 percent").arg(std::lround(newest->bands.back() * 100)));
    update();
}

void LevelMeter::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    if (!shown_)
        return;
    const auto bars = [&](const auto& values, double left, double right, double gap,
                          const QBrush& brush) {
        const double each = (right - left) / static_cast<double>(values.size());
        for (std::size_t at = 0; at < values.size(); ++at) {
            const double top = height() * (1.0 - static_cast<double>(values[at]));
            painter.fillRect(
                QRectF(left + each * static_cast<double>(at), top, each - gap, height() - top),
                brush);
        }
    };
    bars(shown_->spectrum, 0, width() * spectrumShare, 0, palette().mid());
    bars(shown_->bands, width() * spectrumShare + 4, width(), 2, palette().highlight());
}

} // namespace tarnwick::player
