#include "player/KeysPanel/DopeSheet.h"

#include "player/KeysPanel/KeyColors.h"
#include "player/KeysPanel/KeyWords.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr int swatch = 16;                       // pixels: the column of the curve's switch
constexpr int leastNames = 120, mostNames = 240; // pixels
constexpr double denseKeys = 1.5;                // pixels between keys that are drawn apart

using Key = KeyframeTracks::Key;

// The keys in a range of time, with one more on both sides.
std::span<const Key> around(std::span<const Key> keys, const Range& time) {
    const auto from = std::ranges::lower_bound(keys, time.from, {}, &Key::time);
    const auto to = std::ranges::upper_bound(keys, time.to, {}, &Key::time);
    const auto first = from == keys.begin() ? from : std::prev(from);
    return {first, std::max(first, to == keys.end() ? to : std::next(to))};
}

} // namespace

DopeSheet::DopeSheet(KeysEditor& editor, KeysView& view)
    : KeyCanvas(editor, view), rows_(new QScrollBar(Qt::Vertical, this)) {
    setAccessibleName(tr("Keys of the parameters"));
    setMinimumHeight(rowHeight() * 2);
    connect(rows_, &QScrollBar::valueChanged, this, qOverload<>(&QWidget::update));
    connect(&editor_, &KeysEditor::changed, this, &DopeSheet::layOut);
}

int DopeSheet::rowHeight() const {
    return std::max(22, fontMetrics().height() + 6);
}

QSize DopeSheet::sizeHint() const {
    return {400, rowHeight() * 5};
}

int DopeSheet::wantedNamesWidth() const {
    int width = leastNames;
    for (const ParamDecl& param : editor_.params())
        width = std::max(width, fontMetrics().horizontalAdvance(QString::fromStdString(param.name) +
                                                                QStringLiteral("   -0000.000")) +
                                    swatch + 16);
    return std::min(width, mostNames);
}

QRect DopeSheet::rectOf(std::size_t row) const {
    return {0, static_cast<int>(row) * rowHeight() - rows_->value(), contentWidth(), rowHeight()};
}

std::optional<std::size_t> DopeSheet::rowAt(const QPointF& place) const {
    const double row = std::floor((place.y() + rows_->value()) / rowHeight());
    return row >= 0 && row < static_cast<double>(editor_.params().size())
               ? std::optional(static_cast<std::size_t>(row))
               : std::nullopt;
}

std::optional<KeyPlace> DopeSheet::keyAt(const QPointF& place) const {
    const auto row = rowAt(place);
    if (!row || place.x() < view_.namesWidth())
        return std::nullopt;
    const ParamDecl& param = editor_.params()[*row];
    const auto key = nearestKey(editor_.keys(), param, view_.axis().at(place.x()));
    const bool isHit =
        key && std::abs(view_.axis().placeOf(key->time) - place.x()) <= KeySymbols::reach;
    return isHit ? key : std::nullopt;
}

KeySelection DopeSheet::keysIn(const QRectF& area) const {
    std::vector<ParamDecl> params;
    for (std::size_t row = 0; row < editor_.params().size(); ++row) {
        const QRectF middle = QRectF(rectOf(row)).adjusted(0, 5, 0, -5);
        if (middle.bottom() >= area.top() && middle.top() <= area.bottom())
            params.push_back(editor_.params()[row]);
    }
    const Axis axis = view_.axis();
    return player::keysIn(editor_.keys(), params, {axis.at(area.left()), axis.at(area.right())});
}

void DopeSheet::pressNames(const QMouseEvent& event) {
    const auto row = rowAt(event.position());
    if (!row)
        return;
    editor_.setRow(*row);
    if (event.position().x() < swatch + 4)
        editor_.togglePin();
    else if (event.type() == QEvent::MouseButtonDblClick)
        editor_.selectParam();
}

void DopeSheet::doubleClick(const QPointF& place) {
    const auto row = rowAt(place);
    if (!row)
        return;
    const ParamDecl& param = editor_.params()[*row];
    const double time = std::max(view_.axis().at(place.x()), 0.0);
    editor_.addKey(param, time, editor_.valueAt(param, time));
}

void DopeSheet::scrollBy(const QPointF& pixels) {
    KeyCanvas::scrollBy(pixels);
    rows_->setValue(rows_->value() - static_cast<int>(std::lround(pixels.y())));
}

// The rows scroll if not all are shown.
void DopeSheet::turnWheel(QWheelEvent* event) {
    const bool isPlain = event->modifiers() == Qt::NoModifier && event->angleDelta().y() != 0;
    if (isPlain && rows_->maximum() > 0)
        rows_->setValue(rows_->value() - event->angleDelta().y() * rowHeight() / 60);
    else
        KeyCanvas::turnWheel(event);
}

void DopeSheet::resizeEvent(QResizeEvent*) {
    layOut();
}

void DopeSheet::layOut() {
    const int extent = width() - contentWidth();
    rows_->setGeometry(contentWidth(), 0, extent, height());
    const int whole = static_cast<int>(editor_.params().size()) * rowHeight();
    rows_->setRange(0, std::max(0, whole - height()));
    rows_->setPageStep(std::max(height(), 1));
    rows_->setSingleStep(rowHeight());
    rows_->setVisible(rows_->maximum() > 0);
    if (editor_.row() != shownRow_)
        showRow();
    update();
}

// Scrolls to the current row.
void DopeSheet::showRow() {
    shownRow_ = editor_.row();
    const int top = static_cast<int>(shownRow_) * rowHeight();
    rows_->setValue(std::clamp(rows_->value(), top + rowHeight() - height(), top));
}

void DopeSheet::updateValues() {
    update(0, 0, view_.namesWidth(), height());
}

void DopeSheet::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect dirty = event->rect();
    painter.fillRect(dirty, palette().base());
    if (editor_.params().empty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect().adjusted(12, 0, -12, 0), Qt::AlignCenter | Qt::TextWordWrap,
                         tr("A line \"// @param name default min max\" in the text makes a "
                            "parameter, which can have keys."));
        return;
    }
    if (hasFocus() || editor_.params().size() > 1)
        painter.fillRect(rectOf(editor_.row()), shade(palette(), isDark(palette()) ? 0.09 : 0.06));
    paintTimes(painter, rect());
    const QRect times(view_.namesWidth(), 0, contentWidth() - view_.namesWidth(), height());
    for (const QRect& part : event->region()) { // while playing: the names, and the playhead
        const QRect clip = part.intersected(times);
        painter.setClipRect(clip);
        for (std::size_t row = 0; row < editor_.params().size(); ++row)
            if (rectOf(row).intersects(clip))
                paintKeys(painter, row, clip);
    }
    painter.setClipping(false);
    if (dirty.left() <= view_.namesWidth())
        for (std::size_t row = 0; row < editor_.params().size(); ++row)
            if (rectOf(row).intersects(dirty))
                paintName(painter, row);
    if (editor_.keys().isEmpty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect().adjusted(view_.namesWidth(), 0, 0, 0), Qt::AlignCenter,
                         tr("A double click or Insert adds a key."));
    }
    paintOver(painter);
}

void DopeSheet::paintKeys(QPainter& painter, std::size_t row, const QRect& dirty) const {
    const ParamDecl& param = editor_.params()[row];
    const Axis axis = view_.axis();
    const QRect place = rectOf(row);
    const double middle = place.center().y() + 0.5;
    painter.setPen(shade(palette(), 0.08));
    painter.drawLine(place.bottomLeft(), place.bottomRight());
    const Range shown{axis.at(dirty.left() - KeySymbols::radius * 2),
                      axis.at(dirty.right() + KeySymbols::radius * 2)};
    const auto keys = around(editor_.keys().keys(param.name), shown);
    if (keys.empty())
        return;
    const QColor color = colorOfParameter(row, palette());
    QColor line = color;
    line.setAlphaF(0.45F);
    const Key* before = &keys.front();
    for (const Key& key : keys.subspan(1)) { // thick where the value does not change
        const double from = axis.placeOf(before->time), to = axis.placeOf(key.time);
        if (to - from < denseKeys && &key != &keys.back())
            continue; // one line for several keys
        const bool isConstant = before + 1 == &key && (before->ease == KeyframeTracks::Ease::hold ||
                                                       before->value == key.value);
        painter.setPen(QPen(line, isConstant ? 5 : 1.5, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(QPointF(from, middle), QPointF(to, middle));
        before = &key;
    }
    double last = -1e9;
    KeyLook lastLook = KeyLook::plain;
    for (const Key& key : keys) {
        const double x = axis.placeOf(key.time);
        const KeyLook look = lookOf(param.name, key.time);
        if (x - last < denseKeys && look == lastLook)
            continue;
        symbols_.draw(painter, {x, middle}, key.ease, look, color);
        last = x;
        lastLook = look;
    }
}

void DopeSheet::paintName(QPainter& painter, std::size_t row) const {
    const ParamDecl& param = editor_.params()[row];
    const QRect place(0, rectOf(row).top(), view_.namesWidth(), rowHeight());
    const bool isCurrent = row == editor_.row();
    painter.fillRect(place, isCurrent ? shade(palette(), isDark(palette()) ? 0.16 : 0.11)
                                      : palette().color(QPalette::Window));
    painter.setPen(shade(palette(), 0.12));
    painter.drawLine(place.bottomLeft(), place.bottomRight());
    painter.drawLine(place.topRight(), place.bottomRight());
    const QColor color = colorOfParameter(row, palette());
    const QRectF dot(7, place.center().y() - 3.5, 8, 8);
    painter.setPen(QPen(color, 1.5));
    painter.setBrush(editor_.isPinned(param.name) || isCurrent ? QBrush(color) : Qt::NoBrush);
    painter.drawEllipse(dot);
    const QRect texts = place.adjusted(swatch + 6, 0, -8, 0);
    const QString value = valueText(param, editor_.document()->valueNow(param));
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(texts, Qt::AlignVCenter | Qt::AlignRight, value);
    painter.setPen(palette().color(QPalette::Text));
    const int left = texts.width() - fontMetrics().horizontalAdvance(value) - 8;
    painter.drawText(texts, Qt::AlignVCenter | Qt::AlignLeft,
                     fontMetrics().elidedText(QString::fromStdString(param.name), Qt::ElideRight,
                                              std::max(left, 20)));
}

} // namespace tarnwick::player
