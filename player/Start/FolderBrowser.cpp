#include "player/Start/FolderBrowser.h"

#include "player/App/Background.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int pictureWidth = 208;

QString nameOf(const std::filesystem::path& path) {
    return QString::fromStdString(path.filename().string());
}

Cell cellOf(const FolderEntry& entry) {
    Cell cell{.title = entry.isFolder ? nameOf(entry.path) : nameOf(entry.path.stem()),
              .isFolder = entry.isFolder};
    if (entry.isFolder)
        cell.detail = QObject::tr("Folder");
    cell.source.file = entry.path;
    return cell;
}

bool isRefresh(const QKeyEvent& event) {
    return event.key() == Qt::Key_R && event.modifiers() == Qt::ControlModifier;
}

} // namespace

FolderBrowser::FolderBrowser(ThumbnailService& service, QWidget* parent) : QWidget(parent) {
    grid_ = new CellGrid(service, pictureWidth);
    grid_->setAccessibleName(tr("Episodes of the folder"));
    state_ = new QLabel;
    state_->setWordWrap(true);
    state_->setMargin(12);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(12, 8, 12, 0);
    column->addWidget(bar());
    column->addWidget(state_);
    column->addWidget(grid_, 1);
    connect(grid_, &CellGrid::chosen, this, &FolderBrowser::choose);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Folder"));
}

QToolButton* FolderBrowser::button(const QString& text, const QString& name) {
    auto* made = new QToolButton;
    made->setText(text);
    made->setToolTip(name);
    made->setAccessibleName(name);
    return made;
}

QWidget* FolderBrowser::bar() {
    auto* made = new QWidget;
    auto* row = new QHBoxLayout(made);
    row->setContentsMargins(0, 0, 0, 0);
    auto* back = button(tr("Start"), tr("Start page"));
    up_ = button(tr("Up"), tr("Folder above (Backspace)"));
    place_ = new QLabel;
    place_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    place_->setTextFormat(Qt::PlainText);
    place_->setMinimumWidth(40);
    filter_ = new QLineEdit;
    filter_->setPlaceholderText(tr("Filter"));
    filter_->setClearButtonEnabled(true);
    filter_->setAccessibleName(tr("Filter by name"));
    filter_->setMaximumWidth(220);
    order_ = new QComboBox;
    order_->addItems({tr("By name"), tr("Newest first")});
    order_->setAccessibleName(tr("Order"));
    row->addWidget(back);
    row->addWidget(up_);
    row->addWidget(place_, 1);
    auto* again = button(tr("Refresh"), tr("Read the folder again (Ctrl+R)"));
    row->addWidget(again);
    connect(again, &QToolButton::clicked, this, &FolderBrowser::refresh);
    row->addWidget(filter_);
    row->addWidget(order_);
    connect(back, &QToolButton::clicked, this, &FolderBrowser::backWanted);
    connect(up_, &QToolButton::clicked, this, &FolderBrowser::goUp);
    connect(filter_, &QLineEdit::textChanged, this, &FolderBrowser::showEntries);
    connect(filter_, &QLineEdit::returnPressed, this, [this] { grid_->setFocus(); });
    connect(order_, &QComboBox::currentIndexChanged, this, &FolderBrowser::showEntries);
    return made;
}

void FolderBrowser::open(const std::filesystem::path& folder) {
    const int number = ++reading_;
    if (folder != listing_.folder)
        filter_->clear();
    place_->setText(QString::fromStdString(folder.string()));
    inBackground(
        this,
        [folder] {
            std::error_code error;
            const auto whole = std::filesystem::weakly_canonical(folder, error);
            return FolderListing::of(error ? folder : whole);
        },
        [this, number](FolderListing listing) {
            if (number == reading_)
                show(std::move(listing));
        });
}

void FolderBrowser::show(FolderListing listing) {
    const std::filesystem::path left = listing_.folder;
    listing_ = std::move(listing);
    place_->setText(QString::fromStdString(listing_.folder.string()));
    up_->setEnabled(listing_.folder.has_relative_path());
    showEntries();
    for (int row = 0; row < grid_->count(); ++row) // the folder that goUp() left
        if (shown_[static_cast<std::size_t>(row)].path == left)
            grid_->setCurrentIndex(grid_->model()->index(row, 0));
}

void FolderBrowser::showEntries() {
    const auto order = order_->currentIndex() == 1 ? FolderOrder::newest : FolderOrder::name;
    shown_ = arranged(listing_.entries, order, filter_->text().toStdString());
    std::vector<Cell> cells;
    for (const FolderEntry& entry : shown_)
        cells.push_back(cellOf(entry));
    QString state = QString::fromStdString(listing_.failure);
    if (state.isEmpty() && shown_.empty())
        state = listing_.entries.empty() ? tr("There are no episodes in this folder.")
                                         : tr("No name has these words.");
    state_->setText(state);
    state_->setVisible(!state.isEmpty());
    grid_->setCells(std::move(cells));
}

void FolderBrowser::choose(int row) {
    const FolderEntry entry = shown_.at(static_cast<std::size_t>(row));
    if (entry.isFolder)
        open(entry.path);
    else
        emit fileChosen(QString::fromStdString(entry.path.string()));
}

void FolderBrowser::goUp() {
    if (listing_.folder.has_relative_path())
        open(listing_.folder.parent_path());
}

// The window has another use for the keys, which is that of an episode.
bool FolderBrowser::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && isRefresh(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void FolderBrowser::keyPressEvent(QKeyEvent* event) {
    const bool isUp = event->key() == Qt::Key_Up && event->modifiers() == Qt::AltModifier;
    if (event->key() == Qt::Key_Backspace || isUp)
        goUp();
    else if (isRefresh(*event))
        refresh();
    else if (event->key() == Qt::Key_Slash)
        filter_->setFocus();
    else
        QWidget::keyPressEvent(event);
}

void FolderBrowser::focusInEvent(QFocusEvent*) {
    grid_->setFocus();
}

} // namespace tarnwick::player
