#include "player/CommandList/CommandList.h"

#include <QAction>
#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr std::size_t mostLast = 5;
constexpr int placeRole = Qt::UserRole; // of the row among those shown

} // namespace

CommandList::CommandList(const Actions& actions, QWidget* parent)
    : QDialog(parent), actions_(actions) {
    setWindowTitle(tr("Commands"));
    query_ = new QLineEdit;
    query_->setPlaceholderText(tr("Search commands"));
    query_->setAccessibleName(tr("Search commands"));
    query_->installEventFilter(this);
    list_ = new QTreeWidget;
    list_->setAccessibleName(tr("Commands"));
    list_->setColumnCount(3);
    list_->setHeaderHidden(true);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setAllColumnsShowFocus(true);
    list_->header()->setStretchLastSection(false);
    list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    list_->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    auto* column = new QVBoxLayout(this);
    column->addWidget(query_);
    column->addWidget(list_, 1);
    connect(query_, &QLineEdit::textChanged, this, &CommandList::showRows);
    connect(list_, &QTreeWidget::itemActivated, this, &CommandList::runCurrent);
    connect(list_, &QTreeWidget::itemClicked, this, &CommandList::runCurrent);
    resize(620, 420);
}

void CommandList::open() {
    rows_ = commandRows(actions_);
    for (auto action = last_.rbegin(); action != last_.rend(); ++action) {
        const auto found = std::ranges::find(rows_, *action, &CommandRow::action);
        if (found != rows_.end())
            std::rotate(rows_.begin(), found, found + 1);
    }
    query_->clear();
    showRows();
    query_->setFocus();
    QDialog::open();
}

void CommandList::showRows() {
    list_->clear();
    QTreeWidgetItem* first = nullptr;
    for (const CommandRow& row : fitting(rows_, query_->text())) {
        if (!row.action)
            continue;
        auto* item = new QTreeWidgetItem({row.text, row.menu, row.shortcut});
        item->setData(
            0, placeRole,
            static_cast<qulonglong>(std::ranges::find(rows_, row.action, &CommandRow::action) -
                                    rows_.begin()));
        item->setDisabled(!row.action->isEnabled());
        if (row.action->isCheckable())
            item->setText(0, (row.action->isChecked() ? QStringLiteral("\u2713 ") : QString()) +
                                 row.text);
        list_->addTopLevelItem(item);
        if (first == nullptr && row.action->isEnabled())
            first = item;
    }
    list_->setCurrentItem(first);
}

void CommandList::runCurrent() {
    const QTreeWidgetItem* item = list_->currentItem();
    if (item == nullptr || item->isDisabled())
        return;
    const QPointer<QAction> action = rows_.at(item->data(0, placeRole).toULongLong()).action;
    accept();
    std::erase(last_, action);
    last_.insert(last_.begin(), action);
    last_.resize(std::min(last_.size(), mostLast));
    // After this dialog gave the focus back: many actions are for the widget that has it.
    QMetaObject::invokeMethod(
        this,
        [action] {
            if (action)
                action->trigger();
        },
        Qt::QueuedConnection);
}

// The arrow keys move in the list while the query has the focus.
bool CommandList::eventFilter(QObject* watched, QEvent* event) {
    if (watched != query_ || event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        QCoreApplication::sendEvent(list_, key);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        runCurrent();
        return true;
    default:
        return QDialog::eventFilter(watched, event);
    }
}

} // namespace tarnwick::player
