#include "player/Window/FrameGraph.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr int margin = 8, graphHeight = 56;
constexpr double goodFrame = 1.0 / 60, slowFrame = 1.0 / 30; // seconds
constexpr double highestMargin = 1.15;                       // of the graph over the longest frame

// On its own dark ground, in both themes: it is over a picture of any colour.
constexpr QRgb ground = 0xff14161a, ink = 0xfff2f2f2, line = 0xff565b63;
constexpr QRgb good = 0xff58c48a, middling = 0xffe0b04c, slow = 0xffe06a5a;

QRgb colorOf(double seconds) {
    if (seconds <= goodFrame)
        return good;
    return seconds <= slowFrame ? middling : slow;
}

} // namespace

FrameGraph::FrameGraph(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(tr("Frame figures"));
}

void FrameGraph::setText(const QString& text) {
    text_ = text;
    setAccessibleDescription(text);
    const QSize needed = fontMetrics().size(0, text);
    const int width = std::max(needed.width(), static_cast<int>(FrameHistory::most));
    resize(width + 2 * margin, needed.height() + graphHeight + 3 * margin);
    update();
}

void FrameGraph::add(double frameSeconds) {
    history_.add(frameSeconds);
}

void FrameGraph::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor::fromRgb(ground));
    painter.setPen(QColor::fromRgb(ink));
    painter.drawText(rect().adjusted(margin, margin, -margin, 0), Qt::AlignLeft | Qt::AlignTop,
                     text_);
    const QRect graph(margin, height() - margin - graphHeight, width() - 2 * margin, graphHeight);
    const double highest = std::max(history_.longest() * highestMargin, slowFrame);
    const auto heightOf = [&](double seconds) {
        return static_cast<int>(std::lround(std::min(seconds / highest, 1.0) * graph.height()));
    };
    const auto& frames = history_.frames();
    int x = graph.right() - static_cast<int>(frames.size());
    for (const double seconds : frames) {
        const int tall = std::max(heightOf(seconds), 1);
        painter.fillRect(++x, graph.bottom() + 1 - tall, 1, tall,
                         QColor::fromRgb(colorOf(seconds)));
    }
    painter.setPen(QColor::fromRgb(line));
    for (const double level : {goodFrame, slowFrame}) {
        const int y = graph.bottom() - heightOf(level);
        painter.drawLine(graph.left(), y, graph.right(), y);
    }
}

} // namespace tarnwick::player
