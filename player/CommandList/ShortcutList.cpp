#include "player/CommandList/ShortcutList.h"

#include "player/CommandList/CommandRows.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tarnwick::player {

ShortcutList::ShortcutList(const Actions& actions, QWidget* parent)
    : QDialog(parent), actions_(actions) {
    setWindowTitle(tr("Keyboard shortcuts"));
    list_ = new QTreeWidget;
    list_->setAccessibleName(tr("Keyboard shortcuts"));
    list_->setColumnCount(2);
    list_->setHeaderLabels({tr("Action"), tr("Keys")});
    list_->header()->setStretchLastSection(false);
    list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* column = new QVBoxLayout(this);
    column->addWidget(list_, 1);
    column->addWidget(buttons);
    resize(520, 640);
}

void ShortcutList::open() {
    list_->clear();
    QTreeWidgetItem* menu = nullptr;
    for (const CommandRow& row : commandRows(actions_)) {
        if (row.shortcut.isEmpty() || !row.action)
            continue;
        const QString name = row.menu.section(QStringLiteral(" \u203A "), 0, 0);
        if (menu == nullptr || menu->text(0) != name)
            menu = new QTreeWidgetItem(list_, {name});
        QStringList keys;
        for (const QKeySequence& one : row.action->shortcuts())
            keys << one.toString(QKeySequence::NativeText);
        new QTreeWidgetItem(menu, {row.text, keys.join(QStringLiteral(", "))});
    }
    list_->expandAll();
    list_->setFocus();
    QDialog::open();
}

} // namespace tarnwick::player
