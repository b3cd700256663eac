#include "player/Editor/CompletionPopup.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QCoreApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTreeView>
#include <QWidget>
#include <algorithm>
#include <array>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int mostRows = 12;
constexpr int widest = 640; // pixels
constexpr std::size_t longestList = 400;

// In the order of CompletionKind.
constexpr std::array kindNames{
    QT_TRANSLATE_NOOP("Completion", "variable"), QT_TRANSLATE_NOOP("Completion", "member"),
    QT_TRANSLATE_NOOP("Completion", "function"), QT_TRANSLATE_NOOP("Completion", "type"),
    QT_TRANSLATE_NOOP("Completion", "constant"), QT_TRANSLATE_NOOP("Completion", "attribute"),
    QT_TRANSLATE_NOOP("Completion", "keyword")};

} // namespace

CompletionPopup::CompletionPopup(QWidget& editor)
    : QObject(&editor), model_(new QStandardItemModel(this)), completer_(new QCompleter(this)),
      view_(new QTreeView) {
    completer_->setWidget(&editor);
    completer_->setModel(model_);
    completer_->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    completer_->setMaxVisibleItems(mostRows);
    completer_->setPopup(view_); // owns the view
    view_->setHeaderHidden(true);
    view_->setRootIsDecorated(false);
    view_->setUniformRowHeights(true);
    view_->setAllColumnsShowFocus(true);
    view_->setSelectionBehavior(QAbstractItemView::SelectRows);
    view_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view_->setAccessibleName(tr("Completions"));
    connect(completer_, qOverload<const QModelIndex&>(&QCompleter::activated), this,
            [this](const QModelIndex& index) {
                const auto row = static_cast<std::size_t>(index.row());
                if (row < list_.size())
                    emit chosen(Completion(list_[row]));
            });
}

void CompletionPopup::fill() {
    model_->clear();
    for (const Completion& one : list_) {
        auto* name = new QStandardItem(QString::fromStdString(one.name));
        const QString kind = QCoreApplication::translate(
            "Completion", kindNames.at(static_cast<std::size_t>(one.kind)));
        const QString detail = QString::fromStdString(one.detail);
        auto* second = new QStandardItem(detail.isEmpty() ? kind : detail);
        second->setForeground(view_->palette().color(QPalette::PlaceholderText));
        name->setToolTip(QString::fromStdString(one.sentence));
        second->setToolTip(QString::fromStdString(one.sentence));
        name->setAccessibleDescription(kind + QStringLiteral(" ") + detail);
        model_->appendRow({name, second});
    }
}

void CompletionPopup::show(std::vector<Completion> list, const QRect& place) {
    if (list.empty()) {
        hide();
        return;
    }
    list.resize(std::min(list.size(), longestList));
    if (list != list_) {
        list_ = std::move(list);
        fill();
        view_->resizeColumnToContents(0);
    }
    const QAbstractItemView& view = *view_;
    QRect below = place;
    below.setWidth(std::min(widest, view_->columnWidth(0) + view.sizeHintForColumn(1) +
                                        view_->verticalScrollBar()->sizeHint().width() + 12));
    completer_->setCurrentRow(0);
    completer_->complete(below);
    view_->setCurrentIndex(completer_->completionModel()->index(0, 0));
}

void CompletionPopup::hide() {
    if (isShown())
        view_->hide();
}

bool CompletionPopup::isShown() const {
    return view_->isVisible();
}

} // namespace tarnwick::player
