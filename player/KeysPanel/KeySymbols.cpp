#include "player/KeysPanel/KeySymbols.h"

#include "player/KeysPanel/KeyColors.h"

#include <QApplication>
#include <array>
#include <cmath>

namespace tarnwick::player {
namespace {

using Ease = KeyframeTracks::Ease;

constexpr int side = 20; // pixels of a symbol with its ring

void drawShape(QPainter& painter, Ease ease, double radius) {
    switch (ease) {
    case Ease::linear: {
        const double far = radius * 1.15;
        const std::array<QPointF, 4> corners{
            {QPointF(0, -far), QPointF(far, 0), QPointF(0, far), QPointF(-far, 0)}};
        painter.drawConvexPolygon(corners.data(), 4);
        return;
    }
    case Ease::smooth:
        painter.drawEllipse(QPointF(0, 0), radius, radius);
        return;
    case Ease::hold:
        painter.drawRect(QRectF(-radius * 0.85, -radius * 0.85, radius * 1.7, radius * 1.7));
        return;
    }
}

QPixmap made(Ease ease, KeyLook look, const QColor& color, double ratio) {
    QPixmap pixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(side / 2.0, side / 2.0);
    const QPalette palette = QApplication::palette();
    const bool isSelected = look == KeyLook::selected || look == KeyLook::selectedAndFocused;
    if (look == KeyLook::focused || look == KeyLook::selectedAndFocused) {
        painter.setPen(QPen(palette.color(QPalette::Text), 1, Qt::DotLine));
        painter.setBrush(Qt::NoBrush);
        drawShape(painter, Ease::hold, side / 2.0);
    }
    painter.setPen(QPen(isSelected ? palette.color(QPalette::Text) : shade(palette, 0.12), 1.4));
    painter.setBrush(isSelected ? palette.color(QPalette::Base) : color);
    drawShape(painter, ease, KeySymbols::radius);
    if (isSelected) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette.color(QPalette::Highlight).lighter(isDark(palette) ? 135 : 110));
        drawShape(painter, ease, KeySymbols::radius - 0.6);
    }
    return pixmap;
}

} // namespace

void KeySymbols::draw(QPainter& painter, const QPointF& place, Ease ease, KeyLook look,
                      const QColor& color) {
    const double ratio = painter.device()->devicePixelRatioF();
    const Name name{ease, look, color.rgb(), static_cast<int>(std::lround(ratio * 100))};
    auto symbol = made_.find(name);
    if (symbol == made_.end())
        symbol = made_.emplace(name, made(ease, look, color, ratio)).first;
    painter.drawPixmap(place - QPointF(side / 2.0, side / 2.0), symbol->second);
}

} // namespace tarnwick::player
