#include "player/KeysPanel/KeysPanel.h"

#include "player/KeysPanel/CurveView.h"
#include "player/KeysPanel/DopeSheet.h"
#include "player/KeysPanel/KeyFields.h"
#include "player/KeysPanel/KeyRuler.h"

#include <QScrollBar>
#include <QSignalBlocker>
#include <QSplitter>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr double ticks = 1000; // of the scroll bar in a second

} // namespace

KeysPanel::KeysPanel(Player& player, QWidget* parent)
    : QWidget(parent), view_(new KeysView(this)), editor_(new KeysEditor(player, *view_, this)),
      fields_(new KeyFields(*editor_, *view_)), ruler_(new KeyRuler(*editor_, *view_)),
      sheet_(new DopeSheet(*editor_, *view_)), curves_(new CurveView(*editor_, *view_)),
      times_(new QScrollBar(Qt::Horizontal)) {
    for (QWidget* widget : {static_cast<QWidget*>(ruler_), static_cast<QWidget*>(sheet_),
                            static_cast<QWidget*>(curves_), static_cast<QWidget*>(times_)})
        widget->setLayoutDirection(Qt::LeftToRight); // of time, in every language of the window
    auto* split = new QSplitter(Qt::Vertical);
    split->addWidget(sheet_);
    split->addWidget(curves_);
    split->setHandleWidth(4);
    split->setChildrenCollapsible(false);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(fields_);
    rows->addWidget(ruler_);
    rows->addWidget(split, 1);
    rows->addWidget(times_);
    connect(fields_->sheetSwitch(), &QToolButton::toggled, sheet_, &QWidget::setVisible);
    connect(fields_->curvesSwitch(), &QToolButton::toggled, curves_, &QWidget::setVisible);
    connect(fields_, &KeyFields::left, this, &KeysPanel::takeFocus);
    connect(fields_, &KeyFields::showAllWanted, this, [this] {
        view_->showAll();
        curves_->showWholeRange();
    });
    connect(fields_, &KeyFields::frameWanted, this, [this] {
        if (const auto span = editor_->selection().span())
            view_->show(*span);
        curves_->frameSelection();
    });
    connect(editor_, &KeysEditor::entryWanted, fields_, &KeyFields::enterTime);
    connect(editor_, &KeysEditor::changed, this, &KeysPanel::layOut);
    connect(view_, &KeysView::changed, this, &KeysPanel::showTimes);
    connect(times_, &QScrollBar::valueChanged, this,
            [this](int value) { view_->scrollTo(value / ticks); });
    connect(&player, &Player::newsArrived, this, &KeysPanel::movePlayhead);
    layOut();
}

void KeysPanel::takeFocus() {
    (sheet_->isVisible() ? static_cast<QWidget*>(sheet_) : curves_)
        ->setFocus(Qt::ShortcutFocusReason);
}

void KeysPanel::resizeEvent(QResizeEvent*) {
    layOut();
}

void KeysPanel::layOut() {
    const int names = sheet_->wantedNamesWidth();
    const int shown = width() - style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    view_->setWidths(names, shown);
    showTimes();
}

void KeysPanel::showTimes() {
    const Range& range = view_->range();
    const double end = std::max(editor_->length(), range.to);
    const QSignalBlocker blocker(times_);
    times_->setRange(0, static_cast<int>(std::lround(std::max(end - range.length(), 0.0) * ticks)));
    times_->setPageStep(std::max(static_cast<int>(range.length() * ticks), 1));
    times_->setSingleStep(std::max(static_cast<int>(range.length() * ticks / 20), 1));
    times_->setValue(static_cast<int>(std::lround(range.from * ticks)));
}

// Only what is near the playhead is drawn again.
void KeysPanel::movePlayhead() {
    if (!isVisible() || editor_->document() == nullptr)
        return;
    const double now = editor_->now();
    if (now == playhead_)
        return;
    const double before = std::exchange(playhead_, now);
    if (view_->follows() && !editor_->isDragging())
        view_->reveal(now);
    ruler_->movePlayhead();
    sheet_->movePlayhead(before, now);
    sheet_->updateValues();
    curves_->movePlayhead(before, now);
}

} // namespace tarnwick::player
