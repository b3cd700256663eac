#include "player/KeysPanel/CurveView.h"

#include "player/Keys/CurveShape.h"
#include "player/KeysPanel/KeyColors.h"
#include "player/KeysPanel/KeyWords.h"

#include <QLineF>
#include <QList>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr double edge = 12; // pixels above and below the range
constexpr RangeLimits limits{.lowest = -0.5, .highest = 1.5, .shortest = 0.001};
constexpr double wheelZoom = 1.2;
constexpr double denseKeys = 1.5; // pixels

using Key = KeyframeTracks::Key;

double spanOf(const ParamDecl& param) {
    return static_cast<double>(param.max) - param.min;
}

double shareOf(const ParamDecl& param, float value) {
    return (std::clamp(value, param.min, param.max) - static_cast<double>(param.min)) /
           spanOf(param);
}

} // namespace

CurveView::CurveView(KeysEditor& editor, KeysView& view) : KeyCanvas(editor, view) {
    setAccessibleName(tr("Curves of the parameters"));
    setMinimumHeight(50);
    connect(&editor_, &KeysEditor::replaced, this, &CurveView::showWholeRange);
}

Axis CurveView::shares() const {
    return {range_, height() - edge, std::min(edge, height() - edge - 1)};
}

void CurveView::set(const Range& shares) {
    range_ = shares;
    update();
}

void CurveView::showWholeRange() {
    set({0, 1});
}

void CurveView::frameSelection() {
    std::optional<Range> values;
    for (const auto& [name, times] : editor_.selection().times())
        if (const ParamDecl* param = editor_.param(name))
            for (const double time : times)
                if (const Key* key = player::keyAt(editor_.keys(), name, time)) {
                    const double share = shareOf(*param, key->value);
                    values = values
                                 ? Range{std::min(values->from, share), std::max(values->to, share)}
                                 : Range{share, share};
                }
    set(values ? framed(*values, 0.15, {.lowest = -0.5, .highest = 1.5, .shortest = 0.1})
               : Range{0, 1});
}

QPointF CurveView::placeOf(const ParamDecl& param, double time, float value) const {
    return {view_.axis().placeOf(time), shares().placeOf(shareOf(param, value))};
}

// The current curve is on top.
std::optional<KeyPlace> CurveView::keyAt(const QPointF& place) const {
    if (place.x() < view_.namesWidth())
        return std::nullopt;
    const Axis axis = view_.axis();
    const Range near{axis.at(place.x() - KeySymbols::reach),
                     axis.at(place.x() + KeySymbols::reach)};
    std::optional<KeyPlace> found;
    double nearest = KeySymbols::reach * 1.5;
    for (const std::size_t row : editor_.shownCurves()) {
        const ParamDecl& param = editor_.params()[row];
        const auto keys = editor_.keys().keys(param.name);
        for (auto key = std::ranges::lower_bound(keys, near.from, {}, &Key::time);
             key != keys.end() && key->time <= near.to; ++key) {
            const double far = (placeOf(param, key->time, key->value) - place).manhattanLength();
            if (far > nearest)
                continue;
            nearest = far;
            found = KeyPlace{param.name, key->time};
        }
    }
    return found;
}

KeySelection CurveView::keysIn(const QRectF& area) const {
    KeySelection found;
    for (const std::size_t row : editor_.shownCurves()) {
        const ParamDecl& param = editor_.params()[row];
        for (const Key& key : editor_.keys().keys(param.name))
            if (area.contains(placeOf(param, key.time, key.value)))
                found.add({param.name, key.time});
    }
    return found;
}

// A press beside keys does not change the current parameter.
std::optional<std::size_t> CurveView::rowAt(const QPointF&) const {
    return std::nullopt;
}

double CurveView::shareBetween(double from, double to) const {
    return shares().at(to) - shares().at(from);
}

void CurveView::doubleClick(const QPointF& place) {
    const ParamDecl* param = editor_.currentParam();
    if (param == nullptr)
        return;
    const double share = std::clamp(shares().at(place.y()), 0.0, 1.0);
    editor_.addKey(*param, std::max(view_.axis().at(place.x()), 0.0),
                   static_cast<float>(param->min + share * spanOf(*param)));
}

void CurveView::scrollBy(const QPointF& pixels) {
    KeyCanvas::scrollBy(pixels);
    set(panned(range_, pixels.y() / shares().pixelsPerUnit(), limits));
}

// On the values, and with Alt, the wheel zooms the values.
void CurveView::turnWheel(QWheelEvent* event) {
    const QPointF place = event->position();
    const bool isAlt = (event->modifiers() & Qt::AltModifier) != 0;
    if (!isAlt && place.x() >= view_.namesWidth()) {
        KeyCanvas::turnWheel(event);
        return;
    }
    const int turned = event->angleDelta().y() != 0 ? event->angleDelta().y()
                                                    : event->angleDelta().x(); // Alt swaps them
    set(zoomed(range_, shares().at(place.y()), std::pow(wheelZoom, turned / 120.0), limits));
}

void CurveView::mouseMoveEvent(QMouseEvent* event) {
    KeyCanvas::mouseMoveEvent(event);
    if (pointer_)
        update(); // the values at the pointer
}

void CurveView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(event->rect(), palette().base());
    if (editor_.params().empty())
        return;
    paintTimes(painter, rect());
    paintValues(painter);
    const QRect times(view_.namesWidth(), 0, contentWidth() - view_.namesWidth(), height());
    for (const QRect& part : event->region()) {
        painter.setClipRect(part.intersected(times));
        for (const std::size_t row : editor_.shownCurves())
            paintCurve(painter, row, part);
    }
    paintOver(painter);
    paintReadout(painter);
}

// The axis of the current parameter, and its name.
void CurveView::paintValues(QPainter& painter) const {
    const ParamDecl& param = *editor_.currentParam();
    const Axis axis = shares();
    const QRect names(0, 0, view_.namesWidth(), height());
    painter.fillRect(names, palette().window());
    const Axis values{
        {param.min + axis.range.from * spanOf(param), param.min + axis.range.to * spanOf(param)},
        axis.begin,
        axis.end};
    const int lineHeight = fontMetrics().height();
    for (const RulerMark& mark : valueMarks(values, lineHeight * 1.6)) {
        painter.setPen(shade(palette(), 0.1));
        painter.drawLine(QPointF(names.right(), mark.place), QPointF(contentWidth(), mark.place));
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(QRectF(0, mark.place - lineHeight / 2.0, names.width() - 8, lineHeight),
                         Qt::AlignRight | Qt::AlignVCenter, QString::fromStdString(mark.label));
    }
    painter.setPen(QPen(shade(palette(), 0.3), 1, Qt::DashLine)); // the ends of the range
    for (const double end : {0.0, 1.0})
        painter.drawLine(QPointF(names.right(), axis.placeOf(end)),
                         QPointF(contentWidth(), axis.placeOf(end)));
    painter.setPen(shade(palette(), 0.12));
    painter.drawLine(names.topRight(), names.bottomRight());
    painter.setPen(colorOfParameter(editor_.row(), palette()));
    painter.drawText(names.adjusted(8, 4, -52, 0), Qt::AlignTop | Qt::AlignLeft,
                     fontMetrics().elidedText(QString::fromStdString(param.name), Qt::ElideRight,
                                              names.width() - 60));
}

void CurveView::paintCurve(QPainter& painter, std::size_t row, const QRect& dirty) const {
    const ParamDecl& param = editor_.params()[row];
    const Axis axis = view_.axis(), heights = shares();
    const auto keys = editor_.keys().keys(param.name);
    const Range content{static_cast<double>(view_.namesWidth()),
                        static_cast<double>(contentWidth())};
    const Range part{std::max<double>(dirty.left() - 3, content.from),
                     std::min<double>(dirty.right() + 3, content.to)};
    if (part.from >= part.to)
        return;
    const Range pixels = keys.empty() ? content : part; // the dots begin at the same place
    std::optional<QPointF> before;
    QList<QLineF> lines;
    for (const CurvePoint& point :
         curvePoints(editor_.keys(), param, editor_.baseValue(param), axis, pixels)) {
        const QPointF place(point.x, heights.placeOf(shareOf(param, point.value)));
        if (before && place != *before)
            lines << QLineF(*before, place);
        before = place;
    }
    const QColor color = colorOfParameter(row, palette());
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, row == editor_.row() ? 2 : 1.3,
                        keys.empty() ? Qt::DotLine : Qt::SolidLine,
                        keys.empty() ? Qt::FlatCap : Qt::RoundCap));
    painter.drawLines(lines); // the outline of one long path takes a second with 10,000 keys
    QPointF last(-1e9, 0);
    const double margin = KeySymbols::radius * 2;
    for (auto key = std::ranges::lower_bound(keys, axis.at(pixels.from - margin), {}, &Key::time);
         key != keys.end() && key->time <= axis.at(pixels.to + margin); ++key) {
        const QPointF place = placeOf(param, key->time, key->value);
        const KeyLook look = lookOf(param.name, key->time);
        if (look == KeyLook::plain && (place - last).manhattanLength() < denseKeys)
            continue;
        symbols_.draw(painter, place, key->ease, look, color);
        last = place;
    }
}

// The values of the curves at the pointer.
void CurveView::paintReadout(QPainter& painter) const {
    if (!pointer_ || pointer_->x() < view_.namesWidth() || pointer_->x() > contentWidth())
        return;
    const double time = std::max(view_.axis().at(pointer_->x()), 0.0);
    QStringList lines{timeText(time)};
    std::vector<QColor> colors{palette().color(QPalette::ToolTipText)};
    for (const std::size_t row : editor_.shownCurves()) {
        const ParamDecl& param = editor_.params()[row];
        lines << QString::fromStdString(param.name) + QStringLiteral("  ") +
                     valueText(param, editor_.valueAt(param, time));
        colors.push_back(colorOfParameter(row, palette()));
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.back());
        painter.drawEllipse(placeOf(param, time, editor_.valueAt(param, time)), 2.5, 2.5);
    }
    int widest = 0;
    for (const QString& line : lines)
        widest = std::max(widest, fontMetrics().horizontalAdvance(line));
    const int lineHeight = fontMetrics().height();
    QRectF box(pointer_->x() + 14, pointer_->y() + 10, widest + 26,
               lineHeight * static_cast<double>(lines.size()) + 8);
    if (box.right() > contentWidth())
        box.moveRight(pointer_->x() - 10);
    box.moveTop(std::clamp(box.top(), 2.0, std::max(2.0, height() - box.height() - 2)));
    painter.setPen(shade(palette(), 0.3));
    painter.setBrush(palette().color(QPalette::ToolTipBase));
    painter.drawRoundedRect(box, 3, 3);
    for (qsizetype index = 0; index < lines.size(); ++index) {
        const QRectF line = box.adjusted(8, 4.0 + lineHeight * static_cast<double>(index), 0, 0);
        if (index > 0) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(colors[static_cast<std::size_t>(index)]);
            painter.drawEllipse(QPointF(line.left() + 3, line.top() + lineHeight / 2.0), 3, 3);
        }
        painter.setPen(palette().color(QPalette::ToolTipText));
        painter.drawText(line.adjusted(index > 0 ? 12 : 0, 0, 0, 0), Qt::AlignTop, lines[index]);
    }
}

} // namespace tarnwick::player
