#include "player/Panels/Scrubber.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int reach = 6;      // pixels around a handle
constexpr int bandHeight = 4; // pixels

} // namespace

Scrubber::Scrubber(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
    setSingleStep(ticks / 10);
    setPageStep(ticks * 5);
    setMinimumHeight(sizeHint().height() + 2 * bandHeight);
}

void Scrubber::setLoop(const std::optional<LoopRange>& loop) {
    if (loop == loop_)
        return;
    loop_ = loop;
    update();
}

QRect Scrubber::grooveRect() const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, this);
}

int Scrubber::handleLength() const {
    return style()->pixelMetric(QStyle::PM_SliderLength, nullptr, this);
}

int Scrubber::placeOf(double time) const {
    const QRect groove = grooveRect();
    const auto tick = static_cast<int>(std::clamp(
        std::round(time * ticks), static_cast<double>(minimum()), static_cast<double>(maximum())));
    return groove.left() + handleLength() / 2 +
           QStyle::sliderPositionFromValue(minimum(), maximum(), tick,
                                           groove.width() - handleLength());
}

double Scrubber::timeAt(double place) const {
    const QRect groove = grooveRect();
    const int within = static_cast<int>(std::lround(place)) - groove.left() - handleLength() / 2;
    return static_cast<double>(QStyle::sliderValueFromPosition(minimum(), maximum(), within,
                                                               groove.width() - handleLength())) /
           ticks;
}

std::optional<LoopEnd> Scrubber::handleAt(const QPointF& place) const {
    if (!loop_ || place.y() < height() - 3 * bandHeight) // above: the slider's own handle
        return std::nullopt;
    const double fromStart = std::abs(place.x() - placeOf(loop_->start));
    const double fromEnd = std::abs(place.x() - placeOf(loop_->end));
    if (std::min(fromStart, fromEnd) > reach)
        return std::nullopt;
    return fromStart < fromEnd ? LoopEnd::start : LoopEnd::end;
}

void Scrubber::paintEvent(QPaintEvent* event) {
    QSlider::paintEvent(event);
    if (!loop_)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor color = palette().color(QPalette::Highlight);
    const int from = placeOf(loop_->start), to = placeOf(loop_->end);
    painter.fillRect(QRect(from, height() - bandHeight, std::max(to - from, 1), bandHeight), color);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    for (const int place : {from, to}) {
        const std::array<QPointF, 3> handle{{QPointF(place - reach + 1, height()),
                                             QPointF(place + reach - 1, height()),
                                             QPointF(place, height() - 3 * bandHeight)}};
        painter.drawConvexPolygon(handle.data(), static_cast<int>(handle.size()));
    }
}

void Scrubber::mousePressEvent(QMouseEvent* event) {
    held_ = event->button() == Qt::LeftButton ? handleAt(event->position()) : std::nullopt;
    if (held_)
        return;
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect handle =
        style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    if (event->button() == Qt::LeftButton && !handle.contains(event->pos()))
        setValue(static_cast<int>(std::lround(timeAt(event->position().x()) * ticks)));
    QSlider::mousePressEvent(event); // on the handle, which is there now
}

void Scrubber::mouseMoveEvent(QMouseEvent* event) {
    if (!held_ || !loop_) {
        QSlider::mouseMoveEvent(event);
        return;
    }
    const LoopRange range = withEndAt(*loop_, *held_, timeAt(event->position().x()));
    emit loopDragged(range.start, range.end);
}

void Scrubber::mouseReleaseEvent(QMouseEvent* event) {
    if (!std::exchange(held_, std::nullopt))
        QSlider::mouseReleaseEvent(event);
}

} // namespace tarnwick::player
