#include "player/Panels/ProblemsPanel.h"

#include <QHeaderView>

namespace tarnwick::player {
namespace {

enum Column { lineColumn, columnColumn, kindColumn, messageColumn };

} // namespace

ProblemsPanel::ProblemsPanel(Player& player, QWidget* parent)
    : QTreeWidget(parent), player_(player) {
    setHeaderLabels({tr("Line"), tr("Column"), tr("Kind"), tr("Message")});
    setRootIsDecorated(false);
    setUniformRowHeights(false);
    setWordWrap(true);
    setAccessibleName(tr("Problems"));
    header()->setStretchLastSection(true);
    connect(&player_, &Player::activeChanged, this, &ProblemsPanel::follow);
    const auto choose = [this](QTreeWidgetItem* item) {
        const int line = item->data(lineColumn, Qt::UserRole).toInt();
        if (line > 0)
            emit chosen(line, item->data(columnColumn, Qt::UserRole).toInt());
    };
    connect(this, &QTreeWidget::itemActivated, this, choose);
    connect(this, &QTreeWidget::itemClicked, this, choose);
    follow();
}

void ProblemsPanel::follow() {
    if (document_ != nullptr)
        document_->disconnect(this);
    document_ = player_.active();
    if (document_ != nullptr)
        connect(document_, &OpenDocument::resultChanged, this, &ProblemsPanel::rebuild);
    rebuild();
}

void ProblemsPanel::rebuild() {
    clear();
    const CompileResult* result = document_ != nullptr ? document_->result() : nullptr;
    if (result == nullptr)
        return;
    for (const Finding& finding : result->findings) {
        const Diagnostic& found = finding.diagnostic;
        auto* item = new QTreeWidgetItem(this);
        if (found.line > 0) {
            item->setText(lineColumn, QString::number(found.line));
            item->setText(columnColumn, QString::number(found.column));
        }
        item->setData(lineColumn, Qt::UserRole, static_cast<int>(found.line));
        item->setData(columnColumn, Qt::UserRole, static_cast<int>(found.column));
        const auto kind = rawValue(found.severity);
        item->setText(kindColumn,
                      QString::fromUtf8(kind.data(), static_cast<qsizetype>(kind.size())));
        QString message = QString::fromStdString(found.message);
        if (!finding.hint.empty())
            message += QStringLiteral(" (%1)").arg(QString::fromStdString(finding.hint));
        item->setText(messageColumn, message);
        item->setToolTip(messageColumn, message);
    }
    if (!result->failure.empty()) {
        auto* item = new QTreeWidgetItem(this);
        item->setText(kindColumn, tr("error"));
        item->setText(messageColumn, QString::fromStdString(result->failure));
    }
    for (int column = 0; column < messageColumn; ++column)
        resizeColumnToContents(column);
}

} // namespace tarnwick::player
