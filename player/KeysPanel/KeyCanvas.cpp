#include "player/KeysPanel/KeyCanvas.h"

#include "player/KeysPanel/KeyColors.h"
#include "player/KeysPanel/KeyCommands.h"
#include "player/KeysPanel/KeyWords.h"

#include <QAccessible>
#include <QApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr double wheelZoom = 1.2; // for a step of the wheel
constexpr double snapReach = 7;   // pixels
constexpr int edgeInterval = 30;  // milliseconds

bool isAdding(Qt::KeyboardModifiers modifiers) {
    return (modifiers & (Qt::ShiftModifier | Qt::ControlModifier)) != 0;
}

} // namespace

KeyCanvas::KeyCanvas(KeysEditor& editor, KeysView& view) : editor_(editor), view_(view) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    atEdge_.setInterval(edgeInterval);
    connect(&atEdge_, &QTimer::timeout, this, &KeyCanvas::scrollAtEdge);
    connect(&editor_, &KeysEditor::changed, this, qOverload<>(&QWidget::update));
    connect(&editor_, &KeysEditor::focusChanged, this, &KeyCanvas::describeFocus);
    connect(&editor_, &KeysEditor::replaced, this, [this] {
        gesture_.reset();
        atEdge_.stop();
    });
    connect(&view_, &KeysView::changed, this, qOverload<>(&QWidget::update));
}

int KeyCanvas::contentWidth() const {
    return width() - style()->pixelMetric(QStyle::PM_ScrollBarExtent);
}

void KeyCanvas::movePlayhead(double from, double to) {
    for (const double time : {from, to}) {
        const double x = std::clamp(view_.axis().placeOf(time), -10.0, width() + 10.0);
        update(static_cast<int>(x) - 2, 0, 5, height());
    }
}

KeyLook KeyCanvas::lookOf(const std::string& name, double time) const {
    const auto& focus = editor_.focus();
    const bool isFocused =
        hasFocus() && focus && focus->name == name && isSameTime(focus->time, time);
    if (editor_.selection().contains(name, time))
        return isFocused ? KeyLook::selectedAndFocused : KeyLook::selected;
    return isFocused ? KeyLook::focused : KeyLook::plain;
}

void KeyCanvas::paintTimes(QPainter& painter, const QRect& area) const {
    const Axis axis = view_.axis();
    painter.setPen(shade(palette(), 0.1));
    for (const RulerMark& mark : timeMarks(axis, 64))
        if (!mark.label.empty() && mark.place >= view_.namesWidth())
            painter.drawLine(QPointF(mark.place, area.top()), QPointF(mark.place, area.bottom()));
    const auto loop = editor_.loop();
    if (!loop)
        return;
    QColor outside = palette().color(QPalette::Text);
    outside.setAlphaF(0.07F);
    const double from = std::clamp<double>(axis.placeOf(loop->start), view_.namesWidth(), width());
    const double to = std::clamp<double>(axis.placeOf(loop->end), view_.namesWidth(), width());
    painter.fillRect(
        QRectF(view_.namesWidth(), area.top(), from - view_.namesWidth(), area.height()), outside);
    painter.fillRect(QRectF(to, area.top(), width() - to, area.height()), outside);
}

void KeyCanvas::paintOver(QPainter& painter) const {
    painter.setClipRect(view_.namesWidth(), 0, width() - view_.namesWidth(), height());
    const auto line = [&](double time, const QPen& pen) {
        const double x = std::round(view_.axis().placeOf(time)) + 0.5;
        painter.setPen(pen);
        painter.drawLine(QPointF(x, 0), QPointF(x, height()));
    };
    if (editor_.guide())
        line(*editor_.guide(), QPen(palette().color(QPalette::Highlight), 1, Qt::DashLine));
    line(editor_.now(), QPen(colorOfPlayhead(palette()), 1.5));
    if (!gesture_ || gesture_->kind != Gesture::Kind::box)
        return;
    QColor fill = palette().color(QPalette::Highlight);
    painter.setPen(fill);
    fill.setAlphaF(0.18F);
    painter.setBrush(fill);
    painter.drawRect(QRectF(gesture_->from, gesture_->last).normalized());
}

// The keys that the window has other uses for, and Tab, come here first.
bool KeyCanvas::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (isKeyCommand(*key) || (key->key() == Qt::Key_Escape && gesture_)) {
            event->accept();
            return true;
        }
    }
    if (event->type() == QEvent::Leave && std::exchange(pointer_, std::nullopt))
        update();
    return QWidget::event(event);
}

void KeyCanvas::mousePressEvent(QMouseEvent* event) {
    if (editor_.document() == nullptr || gesture_)
        return;
    pointer_.reset();
    if (event->button() == Qt::MiddleButton)
        gesture_ = Gesture{
            .kind = Gesture::Kind::pan, .from = event->position(), .last = event->position()};
    else if (event->button() == Qt::LeftButton && event->position().x() < view_.namesWidth())
        pressNames(*event);
    else if (event->button() == Qt::LeftButton)
        press(*event);
    else if (const auto key = keyAt(event->position());
             key && !editor_.selection().contains(key->name, key->time))
        selectPressed(*key, Qt::NoModifier); // the context menu is for it
    update();
}

void KeyCanvas::press(const QMouseEvent& event) {
    const auto key = keyAt(event.position());
    gesture_ = Gesture{.kind = key ? Gesture::Kind::press : Gesture::Kind::box,
                       .from = event.position(),
                       .last = event.position(),
                       .key = key,
                       .modifiers = event.modifiers(),
                       .before = editor_.selection(),
                       .fromTime = view_.axis().at(event.position().x())};
    if (!key) {
        if (const auto row = rowAt(event.position()))
            editor_.setRow(*row);
        return;
    }
    const bool isSelected = editor_.selection().contains(key->name, key->time);
    if (!isSelected && !(event.modifiers() & Qt::ControlModifier))
        selectPressed(*key, event.modifiers());
    else
        editor_.setFocus(key);
}

void KeyCanvas::selectPressed(const KeyPlace& key, Qt::KeyboardModifiers modifiers) {
    KeySelection selection = isAdding(modifiers) ? editor_.selection() : KeySelection{};
    selection.add(key);
    editor_.select(std::move(selection), key);
}

void KeyCanvas::mouseMoveEvent(QMouseEvent* event) {
    if (!gesture_) {
        pointer_ = event->position();
        const bool isOverKey = keyAt(event->position()).has_value();
        setCursor(isOverKey ? Qt::PointingHandCursor : Qt::ArrowCursor);
        return;
    }
    using Kind = Gesture::Kind;
    const QPointF place = event->position();
    if (gesture_->kind == Kind::pan)
        scrollBy(place - gesture_->last);
    else if (gesture_->kind == Kind::box)
        boxTo(place);
    else if (gesture_->kind == Kind::press &&
             (place - gesture_->from).manhattanLength() >= QApplication::startDragDistance())
        beginDrag();
    gesture_->last = place;
    if (gesture_->kind == Kind::drag)
        dragTo(place, event->modifiers());
    const bool isBeyond = place.x() < view_.namesWidth() || place.x() > contentWidth();
    if (isBeyond && (gesture_->kind == Kind::drag || gesture_->kind == Kind::box))
        atEdge_.start();
    else
        atEdge_.stop();
}

void KeyCanvas::beginDrag() {
    const KeyPlace& key = *gesture_->key;
    if (!editor_.selection().contains(key.name, key.time))
        selectPressed(key, Qt::NoModifier); // pressed with Ctrl
    gesture_->kind = Gesture::Kind::drag;
    gesture_->grabbed = key.time;
    gesture_->drag = editor_.beginDrag();
    gesture_->before = gesture_->drag->selection();
}

void KeyCanvas::dragTo(const QPointF& place, Qt::KeyboardModifiers modifiers) {
    const QPointF moved = place - gesture_->from;
    KeyMove move{.seconds = view_.axis().at(place.x()) - gesture_->fromTime,
                 .share = shareBetween(gesture_->from.y(), place.y())};
    if (modifiers & Qt::ShiftModifier) // along one axis
        (std::abs(moved.x()) >= std::abs(moved.y()) ? move.share : move.seconds) = 0;
    const bool snaps = view_.snaps() && !(modifiers & Qt::AltModifier);
    const bool copies = (gesture_->modifiers & Qt::ControlModifier) != 0;
    editor_.preview(gesture_->drag->moved(
                        gesture_->grabbed, move, copies ? Originals::kept : Originals::moved,
                        snaps ? Snap::on : Snap::off, snapReach / view_.axis().pixelsPerUnit()),
                    copies ? "Duplicate keys" : "Move keys");
}

void KeyCanvas::boxTo(const QPointF& place) {
    gesture_->last = place;
    QRectF box = QRectF(gesture_->from, place).normalized();
    const double start = view_.axis().placeOf(gesture_->fromTime); // the view may have moved
    box.setLeft(std::min(start, place.x()));
    box.setRight(std::max(start, place.x()));
    KeySelection selection = isAdding(gesture_->modifiers) ? gesture_->before : KeySelection{};
    selection.add(keysIn(box));
    if (selection != editor_.selection())
        editor_.select(std::move(selection));
    update();
}

void KeyCanvas::scrollAtEdge() {
    if (!gesture_)
        return;
    const double x = gesture_->last.x();
    const double beyond = x < view_.namesWidth() ? x - view_.namesWidth() : x - contentWidth();
    view_.pan(std::clamp(beyond, -60.0, 60.0) / 4 / view_.axis().pixelsPerUnit());
    if (gesture_->kind == Gesture::Kind::drag)
        dragTo(gesture_->last, QGuiApplication::keyboardModifiers());
    else
        boxTo(gesture_->last);
}

void KeyCanvas::mouseReleaseEvent(QMouseEvent*) {
    atEdge_.stop();
    if (gesture_)
        release(*std::exchange(gesture_, std::nullopt));
    update();
}

void KeyCanvas::release(const Gesture& gesture) {
    using Kind = Gesture::Kind;
    const bool isClick = gesture.from == gesture.last;
    if (gesture.kind == Kind::drag) {
        editor_.endDrag();
    } else if (gesture.kind == Kind::box && isClick && !isAdding(gesture.modifiers)) {
        editor_.selectNone();
    } else if (gesture.kind == Kind::press && (gesture.modifiers & Qt::ControlModifier)) {
        KeySelection selection = editor_.selection();
        selection.toggle(*gesture.key);
        editor_.select(std::move(selection), gesture.key);
    } else if (gesture.kind == Kind::press && !isAdding(gesture.modifiers)) {
        selectPressed(*gesture.key, Qt::NoModifier);
    }
}

void KeyCanvas::cancel() {
    atEdge_.stop();
    const Gesture gesture = *std::exchange(gesture_, std::nullopt);
    if (gesture.kind == Gesture::Kind::drag)
        editor_.cancelDrag(gesture.before);
    else if (gesture.kind == Gesture::Kind::box)
        editor_.select(gesture.before);
    update();
}

void KeyCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || event->position().x() < view_.namesWidth() ||
        editor_.document() == nullptr)
        return mousePressEvent(event);
    if (keyAt(event->position()))
        emit editor_.entryWanted();
    else
        doubleClick(event->position());
}

void KeyCanvas::wheelEvent(QWheelEvent* event) {
    event->accept();
    turnWheel(event);
}

void KeyCanvas::scrollBy(const QPointF& pixels) {
    view_.pan(-pixels.x() / view_.axis().pixelsPerUnit());
}

void KeyCanvas::turnWheel(QWheelEvent* event) {
    const double steps = event->angleDelta().y() / 120.0;
    const double across = event->angleDelta().x() / 120.0;
    if (event->modifiers() & Qt::ControlModifier)
        view_.zoom(std::pow(wheelZoom, steps), view_.axis().at(event->position().x()));
    else
        view_.pan(-(steps + across) * view_.range().length() / 12);
}

void KeyCanvas::keyPressEvent(QKeyEvent* event) {
    if (gesture_) {
        if (event->key() == Qt::Key_Escape)
            cancel();
        else if (gesture_->kind == Gesture::Kind::drag)
            dragTo(gesture_->last, event->modifiers()); // Shift and Alt count at once
        return;
    }
    if (event->key() == Qt::Key_Escape && (editor_.focus() || !editor_.selection().isEmpty()))
        editor_.selectNone();
    else if (editor_.document() == nullptr || !runKeyCommand(*event, editor_, view_))
        QWidget::keyPressEvent(event);
}

// The steps of a key that is held down are one change.
void KeyCanvas::keyReleaseEvent(QKeyEvent* event) {
    if (gesture_ && gesture_->kind == Gesture::Kind::drag)
        dragTo(gesture_->last, event->modifiers());
    else if (!gesture_ && !event->isAutoRepeat())
        editor_.endGesture();
}

void KeyCanvas::contextMenuEvent(QContextMenuEvent* event) {
    if (editor_.document() == nullptr || gesture_)
        return;
    QMenu menu(this);
    fillKeysMenu(menu, editor_, view_);
    menu.exec(event->globalPos());
}

void KeyCanvas::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        symbols_.clear();
}

// Tab goes from key to key, without changing the selection. It leaves after the last one, or at
// once if no key has the focus.
bool KeyCanvas::focusNextPrevChild(bool isNext) {
    const auto key = editor_.focus() ? nextKey(editor_.keys(), editor_.params(), editor_.focus(),
                                               isNext ? Direction::forward : Direction::back)
                                     : std::nullopt;
    if (!key)
        return QWidget::focusNextPrevChild(isNext);
    editor_.setFocus(key);
    view_.reveal(key->time);
    return true;
}

void KeyCanvas::describeFocus() {
    setAccessibleDescription(descriptionOfFocus(editor_));
    QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&changed);
    update();
}

} // namespace tarnwick::player
