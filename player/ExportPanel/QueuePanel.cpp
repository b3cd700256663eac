#include "player/ExportPanel/QueuePanel.h"

#include "player/ExportPanel/JobRow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <vector>

namespace tarnwick::player {
namespace {

constexpr int mostAtOnce = 8;

} // namespace

QueuePanel::QueuePanel(ExportQueue& queue, QWidget* parent) : QWidget(parent), queue_(queue) {
    auto* column = new QVBoxLayout(this);
    column->addWidget(head());
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* list = new QWidget;
    list->setAccessibleName(tr("Exports"));
    rows_ = new QVBoxLayout(list);
    rows_->setContentsMargins(0, 0, 0, 0);
    empty_ = new QLabel(tr("There are no exports. File, Export movie... adds one."));
    empty_->setAlignment(Qt::AlignCenter);
    rows_->addWidget(empty_);
    rows_->addStretch(1);
    scroll->setWidget(list);
    column->addWidget(scroll, 1);
    connect(&queue_, &ExportQueue::changed, this, &QueuePanel::show);
}

QWidget* QueuePanel::head() {
    auto* head = new QWidget;
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(0, 0, 0, 0);
    auto* label = new QLabel(tr("Exports at once:"));
    auto* limit = new QSpinBox;
    limit->setRange(1, mostAtOnce);
    limit->setValue(queue_.limit());
    limit->setAccessibleName(tr("Exports at once"));
    label->setBuddy(limit);
    connect(limit, &QSpinBox::valueChanged, this, [this](int jobs) { queue_.setLimit(jobs); });
    clear_ = new QPushButton(tr("Remove finished"));
    clear_->setEnabled(false);
    connect(clear_, &QPushButton::clicked, this, &QueuePanel::clear);
    row->addWidget(label);
    row->addWidget(limit);
    row->addStretch(1);
    row->addWidget(clear_);
    return head;
}

// The newest export is the first row.
void QueuePanel::show(int id) {
    const auto& jobs = queue_.jobs();
    const auto job = jobs.find(id);
    if (job == jobs.end()) {
        if (const auto gone = shown_.extract(id))
            gone.mapped()->deleteLater();
    } else if (JobRow*& row = shown_[id]; row != nullptr) {
        row->show(job->second);
    } else {
        row = new JobRow(queue_, id);
        rows_->insertWidget(0, row);
    }
    empty_->setVisible(shown_.empty());
    clear_->setEnabled(
        std::ranges::any_of(jobs, [](const auto& one) { return one.second.isOver(); }));
}

void QueuePanel::clear() {
    std::vector<int> over;
    for (const auto& [id, job] : queue_.jobs())
        if (job.isOver())
            over.push_back(id);
    for (const int id : over)
        queue_.remove(id);
}

} // namespace tarnwick::player
