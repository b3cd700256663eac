#include "player/Panels/TransportBar.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "player/Panels/Scrubber.h"

#include <QDoubleSpinBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QSignalBlocker>
#include <QToolButton>
#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr int ticks = Scrubber::ticks;
constexpr int scrubberColumn = 4;
constexpr int leastScrubber = 20;    // letters
constexpr double longestShown = 1e7; // seconds on the slider, 115 days

// "1:02.50 f 3750".
QString timeText(double time) {
    const auto hundredths = static_cast<qint64>(std::floor(time * 100));
    return QStringLiteral("%1:%2.%3  f %4")
        .arg(hundredths / 6000)
        .arg(hundredths / 100 % 60, 2, 10, QLatin1Char('0'))
        .arg(hundredths % 100, 2, 10, QLatin1Char('0'))
        .arg(Transport::frameOf(time));
}

} // namespace

TransportBar::TransportBar(Player& player, QWidget* parent) : QWidget(parent), player_(player) {
    setLayoutDirection(Qt::LeftToRight); // of time, in every language of the window
    rows_ = new QGridLayout(this);
    rows_->setContentsMargins(6, 4, 6, 4);
    rows_->setColumnStretch(scrubberColumn, 1);
    int column = 0;
    const auto add = [&](QWidget* widget) { rows_->addWidget(widget, 1, column++); };
    add(button(QStyle::SP_MediaSkipBackward, tr("Restart"), &TransportBar::restart));
    add(button(QStyle::SP_MediaSeekBackward, tr("Step back"), &TransportBar::stepBack));
    play_ = button(QStyle::SP_MediaPlay, tr("Play"), &TransportBar::togglePlaying);
    add(play_);
    add(button(QStyle::SP_MediaSeekForward, tr("Step forward"), &TransportBar::stepForward));
    position_ = new Scrubber;
    position_->setAccessibleName(tr("Time"));
    add(position_);
    time_ = new QLabel;
    time_->setMinimumWidth(time_->fontMetrics().horizontalAdvance(timeText(5999.99)));
    add(time_);
    loop_ = new QToolButton;
    icons_.push_back({loop_, QStyle::SP_BrowserReload});
    loop_->setCheckable(true);
    loop_->setToolTip(tr("Repeat the loop range (L)"));
    loop_->setAccessibleName(tr("Loop"));
    add(loop_);
    speed_ = new QDoubleSpinBox;
    speed_->setRange(-Transport::longestSpeed, Transport::longestSpeed);
    speed_->setSingleStep(0.25);
    speed_->setValue(1);
    speed_->setSuffix(QStringLiteral("\u00D7"));
    speed_->setAccessibleName(tr("Speed"));
    add(speed_);
    connect(position_, &QSlider::valueChanged, this, [this](int value) {
        if (document_ != nullptr)
            change(document_->transport().sought(static_cast<double>(value) / ticks,
                                                 currentMediaTime()));
    });
    connect(loop_, &QToolButton::clicked, this, &TransportBar::toggleLoop);
    connect(position_, &Scrubber::loopDragged, this, [this](double start, double end) {
        setLoop(LoopRange{start, end});
    });
    connect(speed_, &QDoubleSpinBox::valueChanged, this, [this](double value) {
        if (document_ != nullptr)
            change(document_->transport().withSpeed(value, currentMediaTime()));
    });
    connect(&player_, &Player::activeChanged, this, &TransportBar::follow);
    connect(&player_, &Player::newsArrived, this, &TransportBar::showState);
    showIcons();
    follow();
}

QToolButton* TransportBar::button(QStyle::StandardPixmap icon, const QString& name,
                                  void (TransportBar::*slot)()) {
    auto* made = new QToolButton;
    icons_.push_back({made, icon});
    made->setToolTip(name);
    made->setAccessibleName(name);
    connect(made, &QToolButton::clicked, this, slot);
    return made;
}

// In the colour of the palette's text: the style's own icons are dark in a dark theme too.
QIcon TransportBar::icon(QStyle::StandardPixmap shape) const {
    const int side = style()->pixelMetric(QStyle::PM_ButtonIconSize, nullptr, this);
    QPixmap pixmap = style()->standardIcon(shape).pixmap(QSize(side, side), devicePixelRatioF());
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), palette().color(QPalette::ButtonText));
    painter.end();
    return pixmap;
}

void TransportBar::showIcons() {
    for (const auto& [one, shape] : icons_)
        one->setIcon(icon(one == play_ && showsPause_ ? QStyle::SP_MediaPause : shape));
}

void TransportBar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        showIcons();
}

// In a narrow window the time has a row of its own.
void TransportBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    int least = leastScrubber * fontMetrics().averageCharWidth();
    for (int place = 0; place < rows_->count(); ++place)
        if (const QLayoutItem* item = rows_->itemAt(place); item->widget() != position_)
            least += item->sizeHint().width() + rows_->horizontalSpacing();
    const bool isNarrow = width() < least;
    if (isNarrow == isNarrow_)
        return;
    isNarrow_ = isNarrow;
    rows_->removeWidget(position_);
    if (isNarrow)
        rows_->addWidget(position_, 0, 0, 1, rows_->columnCount());
    else
        rows_->addWidget(position_, 1, scrubberColumn);
}

void TransportBar::follow() {
    if (document_ != nullptr)
        document_->disconnect(this);
    document_ = player_.active();
    setEnabled(document_ != nullptr);
    lastLoop_.reset();
    if (document_ != nullptr)
        connect(document_, &OpenDocument::transportChanged, this, &TransportBar::showState);
    showState();
}

double TransportBar::length() const {
    constexpr double shortest = 1, usual = 30;
    if (document_ == nullptr)
        return usual;
    const Document& document = document_->document();
    return std::max({document.episode()->length().value_or(usual),
                     document.settings().keys.lastTime(), shortest});
}

void TransportBar::change(const Transport& transport) {
    document_->setTransport(transport);
}

void TransportBar::togglePlaying() {
    if (document_ == nullptr)
        return;
    const Transport& now = document_->transport();
    change(now.isPlaying ? now.paused(currentMediaTime()) : now.played(currentMediaTime()));
}

void TransportBar::stepForward() {
    if (document_ != nullptr)
        change(document_->transport().stepped(1, currentMediaTime()));
}

void TransportBar::stepBack() {
    if (document_ != nullptr)
        change(document_->transport().stepped(-1, currentMediaTime()));
}

void TransportBar::restart() {
    if (document_ != nullptr)
        change(document_->transport().sought(0, currentMediaTime()));
}

void TransportBar::setLoop(const std::optional<LoopRange>& range) {
    if (document_ == nullptr)
        return;
    if (range)
        lastLoop_ = range;
    change(document_->transport().withLoop(range, currentMediaTime()));
}

LoopRange TransportBar::loopOrWhole() const {
    return document_->transport().loop.value_or(LoopRange{0, length()});
}

void TransportBar::setLoopStart() {
    if (document_ == nullptr)
        return;
    const double time = document_->time();
    LoopRange range = loopOrWhole();
    range.start = time;
    if (range.end <= time)
        range.end = std::max(length(), time + 1);
    setLoop(range);
}

void TransportBar::setLoopEnd() {
    if (document_ == nullptr)
        return;
    LoopRange range = loopOrWhole();
    range.end = document_->time();
    if (range.start >= range.end)
        range.start = 0;
    setLoop(range);                       // ignored at time 0
    if (document_->transport().isPlaying) // which is at the end now
        change(document_->transport().sought(range.start, currentMediaTime()));
}

void TransportBar::toggleLoop() {
    if (document_ == nullptr)
        return;
    if (const auto loop = document_->transport().loop) {
        setLoop(std::nullopt);
        lastLoop_ = loop;
    } else {
        setLoop(lastLoop_.value_or(LoopRange{0, length()}));
    }
}

void TransportBar::clearLoop() {
    setLoop(std::nullopt);
    lastLoop_.reset();
}

void TransportBar::showState() {
    if (document_ == nullptr)
        return;
    const Transport& now = document_->transport();
    const double time = document_->time();
    if (now.isPlaying != showsPause_) {
        showsPause_ = now.isPlaying;
        showIcons();
    }
    play_->setToolTip(now.isPlaying ? tr("Pause") : tr("Play"));
    play_->setAccessibleName(play_->toolTip());
    const QSignalBlocker position(position_), loop(loop_), speed(speed_);
    const double end = std::max({length(), time, now.loop ? now.loop->end : 0.0});
    position_->setRange(0, static_cast<int>(std::min(end, longestShown) * ticks));
    if (!position_->isSliderDown())
        position_->setValue(static_cast<int>(std::min(time, longestShown) * ticks));
    position_->setLoop(now.loop);
    loop_->setChecked(now.loop.has_value());
    if (!speed_->hasFocus())
        speed_->setValue(now.speed);
    time_->setText(timeText(time));
}

} // namespace tarnwick::player
