#include "player/KeysPanel/KeyRuler.h"

#include "player/KeysPanel/KeyColors.h"
#include "player/KeysPanel/KeyWords.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int barHeight = 10;     // pixels
constexpr double handleReach = 6; // pixels
constexpr double snapReach = 7;   // pixels
constexpr double labelDistance = 64;

} // namespace

KeyRuler::KeyRuler(KeysEditor& editor, KeysView& view) : editor_(editor), view_(view) {
    setAccessibleName(tr("Times"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus); // for Escape during a drag
    connect(&editor_, &KeysEditor::changed, this, qOverload<>(&QWidget::update));
    connect(&editor_, &KeysEditor::replaced, this, [this] { gesture_.reset(); });
    connect(&view_, &KeysView::changed, this, qOverload<>(&QWidget::update));
}

QSize KeyRuler::sizeHint() const {
    return {400, fontMetrics().height() + 8 + barHeight};
}

int KeyRuler::barTop() const {
    return height() - barHeight;
}

void KeyRuler::movePlayhead() {
    update();
}

KeyRuler::Part KeyRuler::partAt(const QPointF& place) const {
    if (place.y() < barTop() - 1)
        return loopPartAt(place.x());
    const auto span = editor_.selection().span();
    if (!span || span->length() <= 0)
        return Part::time;
    const double from = view_.axis().placeOf(span->from), to = view_.axis().placeOf(span->to);
    if (std::abs(place.x() - to) <= handleReach)
        return Part::last;
    if (std::abs(place.x() - from) <= handleReach)
        return Part::first;
    return place.x() > from && place.x() < to ? Part::bar : Part::time;
}

KeyRuler::Part KeyRuler::loopPartAt(double x) const {
    const auto loop = editor_.loop();
    if (!loop)
        return Part::time;
    const double fromStart = std::abs(x - view_.axis().placeOf(loop->start));
    const double fromEnd = std::abs(x - view_.axis().placeOf(loop->end));
    if (std::min(fromStart, fromEnd) > handleReach)
        return Part::time;
    return fromStart < fromEnd ? Part::loopStart : Part::loopEnd;
}

void KeyRuler::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().window());
    painter.setPen(shade(palette(), 0.2));
    painter.drawLine(QPointF(0, height() - 0.5), QPointF(width(), height() - 0.5));
    if (editor_.document() == nullptr)
        return;
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QRect(8, 0, view_.namesWidth() - 16, barTop()),
                     Qt::AlignVCenter | Qt::AlignLeft, timeText(editor_.now()));
    painter.setClipRect(view_.namesWidth(), 0, width() - view_.namesWidth(), height());
    paintLoop(painter);
    paintMarks(painter);
    paintBar(painter);
    paintPlayhead(painter);
}

void KeyRuler::paintMarks(QPainter& painter) const {
    const QColor text = palette().color(QPalette::Text), dim = shade(palette(), 0.55);
    for (const RulerMark& mark : timeMarks(view_.axis(), labelDistance)) {
        const bool isLong = !mark.label.empty();
        const double x = std::round(mark.place) + 0.5;
        painter.setPen(shade(palette(), isLong ? 0.45 : 0.25));
        painter.drawLine(QPointF(x, barTop() - (isLong ? 6 : 3)), QPointF(x, barTop()));
        painter.setPen(mark.isWhole ? text : dim);
        if (isLong)
            paintLabel(painter, x, QString::fromStdString(mark.label));
    }
}

// In the middle above the mark; whole at the start of the times.
void KeyRuler::paintLabel(QPainter& painter, double x, const QString& label) const {
    const double width = fontMetrics().horizontalAdvance(label) + 2;
    const double left =
        x < view_.namesWidth() ? x - width / 2 : std::max(x - width / 2, view_.namesWidth() + 3.0);
    painter.drawText(QRectF(left, 1, width, barTop() - 6), Qt::AlignCenter, label);
}

void KeyRuler::paintLoop(QPainter& painter) const {
    const auto loop = editor_.loop();
    if (!loop)
        return;
    const double from = view_.axis().placeOf(loop->start), to = view_.axis().placeOf(loop->end);
    QColor fill = palette().color(QPalette::Highlight);
    fill.setAlphaF(0.22F);
    painter.fillRect(QRectF(from, 0, to - from, barTop()), fill);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
    for (const double end : {from, to})
        painter.drawLine(QPointF(end, 0), QPointF(end, barTop()));
}

void KeyRuler::paintBar(QPainter& painter) const {
    const auto span = editor_.selection().span();
    if (!span || span->length() <= 0)
        return;
    const double from = view_.axis().placeOf(span->from), to = view_.axis().placeOf(span->to);
    QColor fill = palette().color(QPalette::Highlight);
    painter.setPen(Qt::NoPen);
    fill.setAlphaF(0.5F);
    painter.setBrush(fill);
    painter.drawRect(QRectF(from, barTop() + 3, to - from, barHeight - 6));
    fill.setAlphaF(1);
    painter.setBrush(fill);
    for (const double end : {from, to})
        painter.drawRoundedRect(QRectF(end - 3, barTop(), 6, barHeight - 1), 1.5, 1.5);
}

void KeyRuler::paintPlayhead(QPainter& painter) const {
    const double x = std::round(view_.axis().placeOf(editor_.now())) + 0.5;
    painter.setPen(QPen(colorOfPlayhead(palette()), 1.5));
    painter.drawLine(QPointF(x, barTop() - 8), QPointF(x, height()));
    painter.setPen(Qt::NoPen);
    painter.setBrush(colorOfPlayhead(palette()));
    const double top = barTop() - 9;
    const std::array<QPointF, 5> handle{{QPointF(x - 5, top - 5), QPointF(x + 5, top - 5),
                                         QPointF(x + 5, top), QPointF(x, top + 6),
                                         QPointF(x - 5, top)}};
    painter.drawConvexPolygon(handle.data(), static_cast<int>(handle.size()));
}

void KeyRuler::mousePressEvent(QMouseEvent* event) {
    if (editor_.document() == nullptr || event->button() != Qt::LeftButton ||
        event->position().x() < view_.namesWidth())
        return;
    const double time = view_.axis().at(event->position().x());
    gesture_ = Gesture{.part = partAt(event->position()), .fromTime = time};
    if (gesture_->part == Part::time)
        editor_.seek(time);
    if (gesture_->part != Part::bar && gesture_->part != Part::first &&
        gesture_->part != Part::last)
        return;
    gesture_->span = *editor_.selection().span();
    gesture_->drag = editor_.beginDrag();
}

void KeyRuler::mouseMoveEvent(QMouseEvent* event) {
    if (!gesture_) {
        const Part part = partAt(event->position());
        setCursor(part == Part::bar    ? Qt::OpenHandCursor
                  : part == Part::time ? Qt::ArrowCursor
                                       : Qt::SizeHorCursor);
        return;
    }
    const bool snaps = view_.snaps() && !(event->modifiers() & Qt::AltModifier);
    drag(view_.axis().at(event->position().x()), snaps ? Snap::on : Snap::off);
}

void KeyRuler::drag(double time, Snap snap) {
    switch (gesture_->part) {
    case Part::time:
        editor_.seek(time);
        return;
    case Part::loopStart:
    case Part::loopEnd:
        editor_.setLoopEnd(gesture_->part == Part::loopStart ? LoopEnd::start : LoopEnd::end, time,
                           snap, snapReach / view_.axis().pixelsPerUnit());
        return;
    case Part::bar:
    case Part::first:
    case Part::last:
        dragKeys(time, snap);
        return;
    }
}

void KeyRuler::dragKeys(double time, Snap snap) {
    const double reach = snapReach / view_.axis().pixelsPerUnit();
    const Range& span = gesture_->span;
    if (gesture_->part == Part::bar) {
        const KeyMove move{.seconds = time - gesture_->fromTime};
        editor_.preview(gesture_->drag->moved(span.from, move, Originals::moved, snap, reach),
                        "Move keys");
        return;
    }
    const bool isFirst = gesture_->part == Part::first;
    editor_.preview(gesture_->drag->scaled(isFirst ? span.from : span.to,
                                           isFirst ? span.to : span.from, time, snap, reach),
                    "Scale keys");
}

void KeyRuler::mouseReleaseEvent(QMouseEvent*) {
    if (std::exchange(gesture_, std::nullopt))
        editor_.endDrag();
}

void KeyRuler::wheelEvent(QWheelEvent* event) {
    const double steps = (event->angleDelta().y() + event->angleDelta().x()) / 120.0;
    if (event->modifiers() & Qt::ControlModifier)
        view_.zoom(std::pow(1.2, steps), view_.axis().at(event->position().x()));
    else
        view_.pan(-steps * view_.range().length() / 12);
    event->accept();
}

bool KeyRuler::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && gesture_ &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void KeyRuler::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape || !gesture_ || !gesture_->drag)
        return QWidget::keyPressEvent(event);
    const KeySelection before = gesture_->drag->selection();
    gesture_.reset();
    editor_.cancelDrag(before);
}

} // namespace tarnwick::player
