#include "player/Panels/RangeStrip.h"

#include "TarnwickCore/Text/Numbers.h"

#include <QContextMenuEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tarnwick::player {
namespace {

constexpr int margin = 6; // pixels beside the ends
constexpr int exactDecimals = 6;
constexpr double steps = 100; // of a key from one end to the other

QString textOf(float number) {
    return QString::fromStdString(shortest(number));
}

// The number of the grid of 1, 2 and 5 times powers of ten that is a hundredth of the range.
double stepOf(const ParamNumbers& numbers) {
    const double wanted = (static_cast<double>(numbers.max) - numbers.min) / steps;
    const double power = std::pow(10.0, std::floor(std::log10(wanted)));
    const double share = wanted / power;
    return power * (share < 1.5 ? 1 : share < 3.5 ? 2 : share < 7.5 ? 5 : 10);
}

} // namespace

RangeStrip::RangeStrip(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    setFont(small);
    setToolTip(tr("Drag the ends or the default. The line in the text changes."));
}

QSize RangeStrip::sizeHint() const {
    return {80, fontMetrics().height() + 8};
}

void RangeStrip::setParam(const ParamDecl& param) {
    param_ = param;
    if (!isDragging_)
        shown_ = {param.defaultValue, param.min, param.max};
    setAccessibleName(tr("Range of %1").arg(QString::fromStdString(param.name)));
    describe();
    update();
}

void RangeStrip::describe() {
    constexpr std::array names{QT_TR_NOOP("minimum"), QT_TR_NOOP("default"), QT_TR_NOOP("maximum")};
    setAccessibleDescription(tr("Minimum %1, default %2, maximum %3. Chosen: %4")
                                 .arg(textOf(shown_.min), textOf(shown_.defaultValue),
                                      textOf(shown_.max),
                                      tr(names.at(static_cast<std::size_t>(handle_)))));
}

double RangeStrip::valueOf(Handle handle) const {
    return handle == Handle::minimum   ? shown_.min
           : handle == Handle::maximum ? shown_.max
                                       : shown_.defaultValue;
}

double RangeStrip::position(Handle handle) const {
    const double room = width() - 2 * margin;
    const double share =
        (valueOf(handle) - shown_.min) / (static_cast<double>(shown_.max) - shown_.min);
    return margin + room * share;
}

// The default only on its own mark, because it is often at an end.
RangeStrip::Handle RangeStrip::nearest(double x) const {
    const double toDefault = std::abs(x - position(Handle::default_));
    const double toMinimum = std::abs(x - position(Handle::minimum));
    const double toMaximum = std::abs(x - position(Handle::maximum));
    if (toDefault < toMinimum && toDefault < toMaximum)
        return Handle::default_;
    return toMinimum <= toMaximum ? Handle::minimum : Handle::maximum;
}

// The numbers after a handle was moved to a value, on the grid. An end takes the default along.
ParamNumbers RangeStrip::moved(Handle handle, double value) const {
    const double step = stepOf({param_.defaultValue, param_.min, param_.max});
    const auto to = static_cast<float>(std::round(value / step) * step);
    ParamNumbers numbers{param_.defaultValue, param_.min, param_.max};
    if (handle == Handle::minimum)
        numbers.min = std::min(to, static_cast<float>(param_.max - step));
    else if (handle == Handle::maximum)
        numbers.max = std::max(to, static_cast<float>(param_.min + step));
    else
        numbers.defaultValue = to;
    numbers.defaultValue = std::clamp(numbers.defaultValue, numbers.min, numbers.max);
    return numbers;
}

void RangeStrip::choose(const ParamNumbers& numbers) {
    if (numbers != ParamNumbers{param_.defaultValue, param_.min, param_.max})
        emit numbersChosen(numbers);
}

void RangeStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor line = palette().color(QPalette::Mid);
    const QColor text = palette().color(QPalette::PlaceholderText);
    const QColor marked = palette().color(QPalette::Highlight);
    const double left = margin, right = width() - margin;
    painter.setPen(line);
    painter.drawLine(QPointF(left, 3.5), QPointF(right, 3.5));
    for (const Handle handle : {Handle::minimum, Handle::maximum, Handle::default_}) {
        const bool isMarked = handle == handle_ && (hasFocus() || isDragging_);
        painter.setPen(Qt::NoPen);
        painter.setBrush(isMarked ? marked : palette().color(QPalette::ButtonText));
        // While dragged, an end shows where it will be in the range of before.
        const double x = position(handle);
        if (handle == Handle::default_)
            painter.drawPolygon(QPolygonF({{x - 4, 8.0}, {x + 4, 8.0}, {x, 1.0}}));
        else
            painter.drawRect(QRectF(x - 1.5, 0, 3, 7));
    }
    painter.setPen(text);
    const QRectF below(left, 7, right - left, height() - 7);
    painter.drawText(below, Qt::AlignLeft | Qt::AlignVCenter, textOf(shown_.min));
    painter.drawText(below, Qt::AlignRight | Qt::AlignVCenter, textOf(shown_.max));
    if (isDragging_ || hasFocus())
        painter.drawText(below, Qt::AlignHCenter | Qt::AlignVCenter,
                         tr("default %1").arg(textOf(shown_.defaultValue)));
}

void RangeStrip::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    handle_ = nearest(event->position().x());
    pressed_ = event->position().x();
    isDragging_ = true;
    describe();
    update();
}

void RangeStrip::mouseMoveEvent(QMouseEvent* event) {
    if (!isDragging_)
        return;
    const ParamNumbers before{param_.defaultValue, param_.min, param_.max};
    const double perPixel =
        (static_cast<double>(before.max) - before.min) / std::max(1, width() - 2 * margin);
    const double from = handle_ == Handle::minimum   ? before.min
                        : handle_ == Handle::maximum ? before.max
                                                     : before.defaultValue;
    shown_ = moved(handle_, from + (event->position().x() - pressed_) * perPixel);
    describe();
    update();
}

void RangeStrip::mouseReleaseEvent(QMouseEvent* event) {
    if (!isDragging_ || event->button() != Qt::LeftButton)
        return;
    isDragging_ = false;
    choose(shown_);
    update();
}

void RangeStrip::mouseDoubleClickEvent(QMouseEvent*) {
    isDragging_ = false;
    editNumbers();
}

void RangeStrip::keyPressEvent(QKeyEvent* event) {
    const double step = stepOf(shown_);
    const auto turn = [this](int by) {
        handle_ = static_cast<Handle>((static_cast<int>(handle_) + by + 3) % 3);
        describe();
        update();
    };
    switch (event->key()) {
    case Qt::Key_Up:
        return turn(1);
    case Qt::Key_Down:
        return turn(-1);
    case Qt::Key_Left:
        return choose(moved(handle_, valueOf(handle_) - step));
    case Qt::Key_Right:
        return choose(moved(handle_, valueOf(handle_) + step));
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return editNumbers();
    case Qt::Key_Escape:
        isDragging_ = false;
        setParam(param_);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void RangeStrip::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto value = static_cast<float>(value_);
    const auto add = [&](const QString& text, const ParamNumbers& numbers) {
        QAction* action = menu->addAction(text, this, [this, numbers] { choose(numbers); });
        action->setEnabled(numbers.max > numbers.min);
    };
    add(tr("Value as &default"), {value, param_.min, param_.max});
    add(tr("Value as m&inimum"), {std::max(param_.defaultValue, value), value, param_.max});
    add(tr("Value as m&aximum"), {std::min(param_.defaultValue, value), param_.min, value});
    menu->addSeparator();
    menu->addAction(tr("&Numbers..."), this, &RangeStrip::editNumbers);
    menu->popup(event->globalPos());
}

void RangeStrip::focusInEvent(QFocusEvent*) {
    update();
}

void RangeStrip::focusOutEvent(QFocusEvent*) {
    update();
}

void RangeStrip::editNumbers() {
    auto* dialog = new QDialog(window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Numbers of %1").arg(QString::fromStdString(param_.name)));
    auto* form = new QFormLayout(dialog);
    const auto entry = [&](const QString& label, float number) {
        auto* made = new QDoubleSpinBox;
        made->setDecimals(exactDecimals);
        made->setRange(std::numeric_limits<float>::lowest(), std::numeric_limits<float>::max());
        made->setSingleStep(stepOf(shown_));
        made->setValue(asWritten(number));
        made->setMinimumWidth(160);
        form->addRow(label, made);
        return made;
    };
    auto* minimum = entry(tr("M&inimum"), param_.min);
    auto* standard = entry(tr("&Default"), param_.defaultValue);
    auto* maximum = entry(tr("M&aximum"), param_.max);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    form->addRow(buttons);
    const auto numbers = [=] {
        return ParamNumbers{static_cast<float>(standard->value()),
                            static_cast<float>(minimum->value()),
                            static_cast<float>(maximum->value())};
    };
    // Only an ordered range can be accepted.
    const auto check = [=] {
        const ParamNumbers now = numbers();
        buttons->button(QDialogButtonBox::Ok)
            ->setEnabled(now.max > now.min && now.defaultValue >= now.min &&
                         now.defaultValue <= now.max);
    };
    for (QDoubleSpinBox* one : {minimum, standard, maximum})
        connect(one, &QDoubleSpinBox::valueChanged, dialog, check);
    connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    connect(dialog, &QDialog::accepted, this, [this, numbers] { choose(numbers()); });
    dialog->open();
}

} // namespace tarnwick::player
