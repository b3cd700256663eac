#include "player/Panels/KeysPanel.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

// Pixels.
constexpr int namesWidth = 110, rulerHeight = 20, rowHeight = 20, curveHeight = 90, keyRadius = 5;
constexpr double usualLength = 30; // seconds shown without a length of the episode
constexpr double longestZoom = 40;

bool isSameTime(double a, double b) {
    return std::abs(a - b) < KeyframeTracks::snap;
}

double onFrame(double time) {
    return static_cast<double>(Transport::frameOf(time)) / Transport::framesPerSecond;
}

// Seconds between two marks of a ruler on which a second has that many pixels.
double markInterval(double pixelsOfSecond) {
    for (const double interval : {0.1, 0.5, 1.0, 2.0, 5.0, 10.0, 30.0, 60.0, 300.0})
        if (interval * pixelsOfSecond >= 50)
            return interval;
    return 3600;
}

} // namespace

KeysPanel::KeysPanel(Player& player, QWidget* parent)
    : QAbstractScrollArea(parent), player_(player) {
    setAccessibleName(tr("Keys"));
    setFocusPolicy(Qt::StrongFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setMinimumHeight(120);
    connect(&player_, &Player::activeChanged, this, &KeysPanel::follow);
    connect(&player_, &Player::newsArrived, viewport(), qOverload<>(&QWidget::update));
    follow();
}

void KeysPanel::follow() {
    if (document_ != nullptr)
        document_->disconnect(this);
    document_ = player_.active();
    chosen_.clear();
    row_ = 0;
    if (document_ != nullptr)
        for (auto changed : {&OpenDocument::settingsChanged, &OpenDocument::textChanged})
            connect(document_, changed, this, &KeysPanel::layOut);
    layOut();
}

void KeysPanel::layOut() {
    row_ = std::min(row_, params().empty() ? 0 : params().size() - 1);
    const int rows = static_cast<int>(params().size()) * rowHeight;
    const int shown = viewport()->height() - rulerHeight - curveHeight;
    verticalScrollBar()->setRange(0, std::max(0, rows - shown));
    verticalScrollBar()->setPageStep(std::max(shown, 1));
    const int width = viewport()->width() - namesWidth;
    horizontalScrollBar()->setRange(0, static_cast<int>(width * (zoom_ - 1)));
    horizontalScrollBar()->setPageStep(std::max(width, 1));
    viewport()->update();
}

const std::vector<ParamDecl>& KeysPanel::params() const {
    static const std::vector<ParamDecl> none;
    return document_ != nullptr ? document_->document().episode()->params() : none;
}

const KeyframeTracks& KeysPanel::keys() const {
    return document_->document().settings().keys;
}

double KeysPanel::length() const {
    const Document& document = document_->document();
    return std::max(
        {document.episode()->length().value_or(usualLength), keys().lastTime() * 1.05, 1.0});
}

int KeysPanel::xOf(double time) const {
    const double width = (viewport()->width() - namesWidth - 2 * keyRadius) * zoom_;
    return namesWidth + keyRadius + static_cast<int>(std::lround(time / length() * width)) -
           horizontalScrollBar()->value();
}

double KeysPanel::timeAt(int x) const {
    const double width = (viewport()->width() - namesWidth - 2 * keyRadius) * zoom_;
    const double share = (x - namesWidth - keyRadius + horizontalScrollBar()->value()) / width;
    return std::clamp(share, 0.0, 1.0) * length();
}

int KeysPanel::yOf(std::size_t row) const {
    return rulerHeight + static_cast<int>(row) * rowHeight + rowHeight / 2 -
           verticalScrollBar()->value();
}

std::optional<std::size_t> KeysPanel::rowAt(int y) const {
    if (y < rulerHeight || y >= curveArea().top())
        return std::nullopt;
    const auto row =
        static_cast<std::size_t>((y - rulerHeight + verticalScrollBar()->value()) / rowHeight);
    return row < params().size() ? std::optional(row) : std::nullopt;
}

std::optional<KeysPanel::Chosen> KeysPanel::keyAt(const QPoint& place) const {
    const auto row = rowAt(place.y());
    if (!row || std::abs(place.y() - yOf(*row)) > rowHeight / 2)
        return std::nullopt;
    const std::string& name = params()[*row].name;
    for (const KeyframeTracks::Key& key : keys().keys(name))
        if (std::abs(xOf(key.time) - place.x()) <= keyRadius + 2)
            return Chosen{name, key.time};
    return std::nullopt;
}

bool KeysPanel::isChosen(const Chosen& key) const {
    return std::ranges::any_of(chosen_, [&](const Chosen& one) {
        return one.name == key.name && isSameTime(one.time, key.time);
    });
}

QRect KeysPanel::curveArea() const {
    return {namesWidth, viewport()->height() - curveHeight, viewport()->width() - namesWidth,
            curveHeight};
}

void KeysPanel::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), palette().base());
    if (document_ == nullptr)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(0, rulerHeight, viewport()->width(), curveArea().top() - rulerHeight);
    for (std::size_t row = 0; row < params().size(); ++row)
        paintRow(painter, row);
    painter.setClipping(false);
    paintRuler(painter);
    paintCurve(painter);
    painter.setPen(QPen(QColor(214, 60, 60), 1));
    const int now = xOf(document_->time());
    if (now >= namesWidth)
        painter.drawLine(now, 0, now, viewport()->height());
    if (hasFocus())
        painter.setPen(palette().highlight().color());
}

void KeysPanel::paintRuler(QPainter& painter) const {
    painter.fillRect(0, 0, viewport()->width(), rulerHeight, palette().window());
    painter.setPen(palette().text().color());
    const double interval = markInterval((xOf(1) - xOf(0)));
    for (double time = 0; time <= length(); time += interval) {
        const int x = xOf(time);
        if (x < namesWidth)
            continue;
        painter.drawLine(x, rulerHeight - 5, x, rulerHeight);
        painter.drawText(x + 3, rulerHeight - 6, QString::number(time, 'g', 4));
    }
}

void KeysPanel::paintRow(QPainter& painter, std::size_t row) const {
    const ParamDecl& param = params()[row];
    const int middle = yOf(row);
    const QRect whole(0, middle - rowHeight / 2, viewport()->width(), rowHeight);
    if (row == row_)
        painter.fillRect(whole, palette().alternateBase());
    painter.setPen(palette().mid().color());
    painter.drawLine(namesWidth, middle, viewport()->width(), middle);
    for (const KeyframeTracks::Key& key : keys().keys(param.name)) {
        const int x = xOf(key.time);
        if (x < namesWidth)
            continue;
        const bool isHere = isChosen({param.name, key.time});
        painter.setPen(palette().text().color());
        painter.setBrush(isHere ? palette().highlight() : palette().button());
        QPolygon diamond;
        diamond << QPoint(x - keyRadius, middle) << QPoint(x, middle - keyRadius)
                << QPoint(x + keyRadius, middle) << QPoint(x, middle + keyRadius);
        if (key.ease == KeyframeTracks::Ease::hold)
            painter.drawRect(x - keyRadius + 1, middle - keyRadius + 1, 2 * keyRadius - 2,
                             2 * keyRadius - 2);
        else if (key.ease == KeyframeTracks::Ease::smooth)
            painter.drawEllipse(QPoint(x, middle), keyRadius, keyRadius);
        else
            painter.drawPolygon(diamond);
    }
    painter.fillRect(QRect(0, whole.top(), namesWidth, rowHeight),
                     row == row_ ? palette().alternateBase() : palette().base());
    painter.setPen(palette().text().color());
    painter.drawText(QRect(6, whole.top(), namesWidth - 10, rowHeight), Qt::AlignVCenter,
                     QString::fromStdString(param.name));
}

void KeysPanel::paintCurve(QPainter& painter) const {
    const QRect area = curveArea();
    painter.fillRect(QRect(0, area.top(), viewport()->width(), area.height()), palette().window());
    if (row_ >= params().size())
        return;
    const ParamDecl& param = params()[row_];
    const auto yOfValue = [&](float value) {
        const double share =
            (static_cast<double>(value) - param.min) / (static_cast<double>(param.max) - param.min);
        return area.bottom() - 8 - std::clamp(share, 0.0, 1.0) * (area.height() - 16);
    };
    QPainterPath path;
    for (int x = area.left() + keyRadius; x < area.right(); ++x) {
        const double y = yOfValue(document_->document().valueAt(param, timeAt(x)));
        path.isEmpty() ? path.moveTo(x, y) : path.lineTo(x, y);
    }
    painter.setPen(QPen(palette().highlight().color(), 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
    painter.setPen(palette().text().color());
    const QRect names(6, area.top(), namesWidth - 10, area.height());
    painter.drawText(names, Qt::AlignTop, QString::number(param.max));
    painter.drawText(names, Qt::AlignBottom, QString::number(param.min));
    for (const KeyframeTracks::Key& key : keys().keys(param.name))
        if (const int x = xOf(key.time); x >= namesWidth)
            painter.drawEllipse(QPointF(x, yOfValue(key.value)), 3, 3);
}

void KeysPanel::change(KeyframeTracks changed, const std::string& name,
                       const std::string& gesture) {
    Settings settings = document_->document().settings();
    settings.keys = std::move(changed);
    document_->setSettings(std::move(settings), name, gesture);
}

void KeysPanel::addKey(std::size_t row, double time) {
    const ParamDecl& param = params()[row];
    KeyframeTracks changed = keys();
    changed.set(param.name, onFrame(time), document_->document().valueAt(param, time));
    chosen_ = {{param.name, onFrame(time)}};
    change(std::move(changed), "Add key of " + param.name);
}

void KeysPanel::moveChosen(double seconds) {
    KeyframeTracks changed = keys();
    std::vector<Copied> moved;
    for (const Chosen& one : chosen_) {
        for (const KeyframeTracks::Key& key : keys().keys(one.name))
            if (isSameTime(key.time, one.time))
                moved.push_back({one.name, key});
        changed.remove(one.name, one.time);
    }
    chosen_.clear();
    for (Copied& one : moved) {
        one.key.time = onFrame(std::max(one.key.time + seconds, 0.0));
        changed.set(one.name, one.key.time, one.key.value, one.key.ease);
        chosen_.push_back({one.name, one.key.time});
    }
    change(std::move(changed), "Move keys", "move keys");
}

void KeysPanel::removeChosen() {
    KeyframeTracks changed = keys();
    for (const Chosen& one : chosen_)
        changed.remove(one.name, one.time);
    chosen_.clear();
    change(std::move(changed), "Remove keys");
}

void KeysPanel::setEase(KeyframeTracks::Ease ease) {
    KeyframeTracks changed = keys();
    for (const Chosen& one : chosen_)
        changed.setEase(one.name, one.time, ease);
    change(std::move(changed), "Change ease");
}

void KeysPanel::copy() {
    copied_.clear();
    if (chosen_.empty())
        return;
    const double first = std::ranges::min(chosen_, {}, &Chosen::time).time;
    for (const Chosen& one : chosen_)
        for (KeyframeTracks::Key key : keys().keys(one.name))
            if (isSameTime(key.time, one.time)) {
                key.time -= first;
                copied_.push_back({one.name, key});
            }
}

// The copied keys begin at the present time.
void KeysPanel::paste() {
    KeyframeTracks changed = keys();
    const double now = onFrame(document_->time());
    chosen_.clear();
    for (const Copied& one : copied_) {
        changed.set(one.name, now + one.key.time, one.key.value, one.key.ease);
        chosen_.push_back({one.name, now + one.key.time});
    }
    change(std::move(changed), "Paste keys");
}

void KeysPanel::seek(double time) {
    document_->setTransport(document_->transport().sought(time, currentMediaTime()));
}

void KeysPanel::mousePressEvent(QMouseEvent* event) {
    if (document_ == nullptr || event->button() != Qt::LeftButton)
        return;
    const QPoint place = event->position().toPoint();
    if (const auto row = rowAt(place.y()))
        row_ = *row;
    const auto key = keyAt(place);
    const bool adds = (event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)) != 0;
    if (key && !isChosen(*key)) {
        if (!adds)
            chosen_.clear();
        chosen_.push_back(*key);
    } else if (key && adds) {
        std::erase(chosen_, *key);
    } else if (!key && !adds) {
        chosen_.clear();
    }
    const bool isRuler = place.y() < rulerHeight;
    if (isRuler)
        seek(timeAt(place.x()));
    if (key || isRuler)
        drag_ = Drag{.from = timeAt(place.x()), .isSeeking = isRuler};
    viewport()->update();
}

void KeysPanel::mouseMoveEvent(QMouseEvent* event) {
    if (!drag_ || document_ == nullptr)
        return;
    const double time = timeAt(event->position().toPoint().x());
    if (drag_->isSeeking) {
        seek(time);
        return;
    }
    const double moved = onFrame(std::abs(time - drag_->from)) * (time < drag_->from ? -1 : 1);
    if (moved == drag_->moved)
        return;
    moveChosen(moved - drag_->moved);
    drag_->moved = moved;
}

void KeysPanel::mouseReleaseEvent(QMouseEvent*) {
    if (drag_ && document_ != nullptr)
        document_->endGesture();
    drag_.reset();
}

void KeysPanel::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPoint place = event->position().toPoint();
    const auto row = document_ != nullptr ? rowAt(place.y()) : std::nullopt;
    if (row && place.x() >= namesWidth && !keyAt(place))
        addKey(*row, timeAt(place.x()));
}

void KeysPanel::contextMenuEvent(QContextMenuEvent* event) {
    if (document_ == nullptr)
        return;
    QMenu menu(this);
    for (const KeyframeTracks::Ease ease : KeyframeTracks::allEases) {
        const auto name = rawValue(ease);
        QAction* action = menu.addAction(
            tr("Ease: %1").arg(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()))),
            this, [this, ease] { setEase(ease); });
        action->setEnabled(!chosen_.empty());
    }
    menu.addAction(tr("Remove"), this, &KeysPanel::removeChosen)->setEnabled(!chosen_.empty());
    menu.addAction(tr("Copy"), this, &KeysPanel::copy)->setEnabled(!chosen_.empty());
    menu.addAction(tr("Paste at the present time"), this, &KeysPanel::paste)
        ->setEnabled(!copied_.empty());
    menu.exec(event->globalPos());
}

void KeysPanel::keyPressEvent(QKeyEvent* event) {
    if (document_ == nullptr || params().empty()) {
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    constexpr double frame = 1.0 / Transport::framesPerSecond;
    if (event->matches(QKeySequence::Copy))
        copy();
    else if (event->matches(QKeySequence::Paste))
        paste();
    else if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)
        removeChosen();
    else if (event->key() == Qt::Key_Insert)
        addKey(row_, document_->time());
    else if (event->key() == Qt::Key_Left)
        moveChosen(-frame);
    else if (event->key() == Qt::Key_Right)
        moveChosen(frame);
    else if (event->key() == Qt::Key_Up)
        row_ = row_ == 0 ? 0 : row_ - 1;
    else if (event->key() == Qt::Key_Down)
        row_ = std::min(row_ + 1, params().size() - 1);
    else
        QAbstractScrollArea::keyPressEvent(event);
    viewport()->update();
}

// With Ctrl, the wheel zooms the time.
void KeysPanel::wheelEvent(QWheelEvent* event) {
    if ((event->modifiers() & Qt::ControlModifier) == 0) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    zoom_ = std::clamp(zoom_ * std::pow(1.2, event->angleDelta().y() / 120.0), 1.0, longestZoom);
    layOut();
}

void KeysPanel::resizeEvent(QResizeEvent*) {
    layOut();
}

} // namespace tarnwick::player
