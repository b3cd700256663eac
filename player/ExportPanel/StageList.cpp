#include "player/ExportPanel/StageList.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace tarnwick::player {

StageList::StageList(QString folder, QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    list_ = new QListWidget;
    list_->setAccessibleName(tr("Earlier versions, the first one first"));
    row->addWidget(list_, 1);
    auto* buttons = new QVBoxLayout;
    QPushButton* more = addButton(*buttons, tr("&Add..."));
    remove_ = addButton(*buttons, tr("&Remove"));
    up_ = addButton(*buttons, tr("Move &up"));
    down_ = addButton(*buttons, tr("Move dow&n"));
    buttons->addStretch(1);
    row->addLayout(buttons);
    connect(more, &QPushButton::clicked, this, [this, begin = std::move(folder)] {
        add(QFileDialog::getOpenFileNames(this, tr("Earlier versions"), begin,
                                          tr("Episodes (*.metal);;All files (*)")));
    });
    connect(remove_, &QPushButton::clicked, this, [this] {
        delete list_->takeItem(list_->currentRow());
        showState();
    });
    connect(up_, &QPushButton::clicked, this, [this] { move(-1); });
    connect(down_, &QPushButton::clicked, this, [this] { move(1); });
    connect(list_, &QListWidget::currentRowChanged, this, &StageList::showState);
    showState();
}

QPushButton* StageList::addButton(QLayout& row, const QString& text) {
    auto* button = new QPushButton(text);
    button->setAutoDefault(false);
    row.addWidget(button);
    return button;
}

void StageList::add(const QStringList& files) {
    list_->addItems(files);
    showState();
}

std::vector<std::filesystem::path> StageList::files() const {
    std::vector<std::filesystem::path> files;
    for (int row = 0; row < list_->count(); ++row)
        files.emplace_back(list_->item(row)->text().toStdString());
    return files;
}

void StageList::move(int rows) {
    const int from = list_->currentRow(), to = from + rows;
    list_->insertItem(to, list_->takeItem(from));
    list_->setCurrentRow(to);
}

void StageList::showState() {
    const int row = list_->currentRow();
    remove_->setEnabled(row >= 0);
    up_->setEnabled(row > 0);
    down_->setEnabled(row >= 0 && row + 1 < list_->count());
}

} // namespace tarnwick::player
