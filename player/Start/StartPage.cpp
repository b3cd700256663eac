#include "player/Start/StartPage.h"

#include "player/App/Background.h"
#include "player/Finding/EpisodeTemplates.h"
#include "player/Finding/RecentEpisodes.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int largePicture = 240, smallPicture = 176; // widths
constexpr std::size_t mostRecent = 10;

} // namespace

StartPage::StartPage(ThumbnailService& service, QWidget* parent)
    : QWidget(parent), service_(service) {
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(24, 16, 24, 24);
    column->addWidget(head());
    recent_ = section(*column, tr("Recent episodes"), smallPicture);
    shipped_ = section(*column, tr("Episodes that come with Tarnwick"), largePicture);
    templates_ = section(*column, tr("New episode from a template"), smallPicture);
    column->addStretch(1);
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(content);
    scroll->setFocusPolicy(Qt::NoFocus);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll);
    for (Section* files : {&recent_, &shipped_})
        connect(files->grid, &CellGrid::chosen, this,
                [this, grid = files->grid](int row) { chooseFile(grid, row); });
    connect(templates_.grid, &CellGrid::chosen, this, [this](int row) {
        const auto& one = episodeTemplates.at(static_cast<std::size_t>(row));
        emit textChosen(QString::fromStdString(one.text("Untitled")));
    });
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Start page"));
    show({});
    showTemplates();
}

QWidget* StartPage::head() {
    auto* made = new QWidget;
    auto* row = new QHBoxLayout(made);
    row->setContentsMargins(0, 0, 0, 0);
    auto* title = new QLabel(QStringLiteral("Tarnwick"));
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 2);
    title->setFont(font);
    row->addWidget(title);
    row->addStretch(1);
    auto* open = new QPushButton(tr("&Open..."));
    auto* folder = new QPushButton(tr("Open fol&der..."));
    row->addWidget(open);
    row->addWidget(folder);
    connect(open, &QPushButton::clicked, this, &StartPage::openWanted);
    connect(folder, &QPushButton::clicked, this, &StartPage::openFolderWanted);
    return made;
}

StartPage::Section StartPage::section(QVBoxLayout& column, const QString& title, int pictureWidth) {
    auto* label = new QLabel(title);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    label->setContentsMargins(0, 14, 0, 0);
    auto* grid = new CellGrid(service_, pictureWidth);
    grid->setAccessibleName(title);
    grid->setShowsAllRows();
    QPalette clear = grid->palette();
    clear.setColor(QPalette::Base, clear.color(QPalette::Window));
    grid->viewport()->setAutoFillBackground(false);
    column.addWidget(label);
    column.addWidget(grid);
    return {label, grid};
}

void StartPage::refresh() {
    inBackground(
        this,
        [] {
            Lists lists;
            lists.recent = existing(RecentEpisodes(recentEpisodesFile()).files());
            if (lists.recent.size() > mostRecent)
                lists.recent.resize(mostRecent);
            if (const auto folder = shippedEpisodes(); !folder.empty())
                lists.shipped = arranged(FolderListing::of(folder).entries, FolderOrder::name, "");
            return lists;
        },
        [this](const Lists& lists) { show(lists); });
}

void StartPage::show(const Lists& lists) {
    const auto fill = [](const Section& section, const std::vector<FolderEntry>& entries,
                         bool alwaysMoves) {
        std::vector<Cell> cells;
        for (const FolderEntry& entry : entries) {
            if (entry.isFolder)
                continue;
            Cell cell{.title = QString::fromStdString(entry.path.stem().string()),
                      .alwaysMoves = alwaysMoves};
            cell.source.file = entry.path;
            cells.push_back(std::move(cell));
        }
        section.title->setVisible(!cells.empty());
        section.grid->setVisible(!cells.empty());
        section.grid->setCells(std::move(cells));
    };
    fill(recent_, lists.recent, false);
    fill(shipped_, lists.shipped, true);
    const bool isUntouched = templates_.grid != nullptr &&
                             templates_.grid->hasFocus() && // the only one until now
                             templates_.grid->currentIndex().row() == 0;
    if (hasFocus() || isUntouched)
        focusInEvent(nullptr);
}

void StartPage::showTemplates() {
    std::vector<Cell> cells;
    for (const EpisodeTemplate& one : episodeTemplates) {
        Cell cell{.title = tr(one.name), .detail = tr(one.detail)};
        cell.source.episode = std::make_shared<const Episode>(Episode::of(one.text("Untitled")));
        cells.push_back(std::move(cell));
    }
    templates_.grid->setCells(std::move(cells));
}

void StartPage::chooseFile(const CellGrid* grid, int row) {
    emit fileChosen(QString::fromStdString(grid->cell(row).source.file.string()));
}

void StartPage::focusInEvent(QFocusEvent*) {
    for (const Section* one : {&recent_, &shipped_, &templates_})
        if (one->grid->count() > 0) {
            one->grid->setFocus(Qt::OtherFocusReason);
            return;
        }
}

} // namespace tarnwick::player
