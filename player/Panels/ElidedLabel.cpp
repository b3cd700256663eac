#include "player/Panels/ElidedLabel.h"

#include <QPainter>
#include <algorithm>

namespace tarnwick::player {
namespace {

constexpr int fewestLetters = 4;

} // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::minimumSizeHint() const {
    const QSize whole = sizeHint();
    return {std::min(whole.width(), fewestLetters * fontMetrics().averageCharWidth()),
            whole.height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    const QRect place = contentsRect();
    painter.drawText(place, Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, place.width()));
}

} // namespace tarnwick::player
