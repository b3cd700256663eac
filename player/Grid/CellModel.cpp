#include "player/Grid/CellModel.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {

CellModel::CellModel(ThumbnailService& service, QObject* parent)
    : QAbstractListModel(parent), service_(&service) {
    connect(&service, &ThumbnailService::arrived, this, &CellModel::take);
}

CellModel::~CellModel() {
    for (Shown& shown : cells_)
        forget(shown);
}

void CellModel::setCells(std::vector<Cell> cells) {
    beginResetModel();
    for (Shown& shown : cells_)
        forget(shown);
    cells_.clear();
    for (Cell& cell : cells)
        cells_.push_back({.cell = std::move(cell)});
    first_ = 0;
    last_ = pointedAt_ = -1;
    endResetModel();
}

void CellModel::forget(Shown& shown) {
    for (std::uint64_t* id : {&shown.still, &shown.film})
        if (std::uint64_t request = std::exchange(*id, 0); request != 0 && service_)
            service_->cancel(request);
    shown.isFilmAsked = false;
}

void CellModel::askStill(Shown& shown, ThumbnailRank rank) {
    if (shown.cell.isFolder || shown.still != 0 || !shown.images.empty() ||
        !shown.failure.isEmpty())
        return;
    ThumbnailRequest request = shown.cell.source;
    request.rank = rank;
    shown.still = service_->ask(std::move(request));
}

void CellModel::askFilm(Shown& shown, ThumbnailRank rank) {
    if (shown.cell.isFolder || shown.isFilmAsked || !shown.failure.isEmpty() ||
        shown.images.size() > 1)
        return;
    ThumbnailRequest request = shown.cell.source;
    request.rank = rank;
    request.frames = filmFrames;
    shown.film = service_->ask(std::move(request));
    shown.isFilmAsked = true;
}

void CellModel::setVisible(int first, int last) {
    if (first == first_ && last == last_)
        return;
    first_ = first;
    last_ = last;
    for (int row = 0; row < rowCount(); ++row) {
        Shown& shown = cells_[static_cast<std::size_t>(row)];
        if (row < first || row > last) {
            forget(shown);
            continue;
        }
        askStill(shown, ThumbnailRank::still);
        if (shown.cell.alwaysMoves)
            askFilm(shown, ThumbnailRank::film);
    }
    dropUnseen(first, last);
}

// Frees the pictures of rows out of sight if there are many.
void CellModel::dropUnseen(int first, int last) {
    const auto kept =
        std::ranges::count_if(cells_, [](const Shown& shown) { return !shown.images.empty(); });
    if (std::cmp_less_equal(kept, mostStills))
        return;
    for (int row = 0; row < rowCount(); ++row)
        if (row < first || row > last)
            cells_[static_cast<std::size_t>(row)].images.clear();
}

void CellModel::setPointedAt(int row) {
    if (row == pointedAt_)
        return;
    const int before = std::exchange(pointedAt_, row);
    phase_ = 0;
    if (before >= 0 && before < rowCount()) {
        Shown& shown = cells_[static_cast<std::size_t>(before)];
        if (shown.film != 0 && !shown.cell.alwaysMoves) {
            service_->cancel(std::exchange(shown.film, 0));
            shown.isFilmAsked = false;
            shown.images.resize(std::min<std::size_t>(shown.images.size(), 1));
        }
        emit dataChanged(index(before), index(before), {imageRole});
    }
    if (row >= 0 && row < rowCount())
        askFilm(cells_[static_cast<std::size_t>(row)], ThumbnailRank::pointedAt);
}

bool CellModel::plays(int row) const {
    const Shown& shown = cells_[static_cast<std::size_t>(row)];
    return shown.images.size() > 1 && (shown.cell.alwaysMoves || row == pointedAt_);
}

bool CellModel::advance() {
    ++phase_;
    bool any = false;
    for (int row = std::max(first_, 0); row <= last_ && row < rowCount(); ++row)
        if (plays(row)) {
            any = true;
            emit dataChanged(index(row), index(row), {imageRole});
        }
    return any;
}

// A film plays forwards and backwards, so that it has no seam.
const QImage& CellModel::image(int row) const {
    static const QImage none;
    const Shown& shown = cells_[static_cast<std::size_t>(row)];
    if (shown.images.empty())
        return none;
    if (!plays(row))
        return shown.images.front();
    const int last = static_cast<int>(shown.images.size()) - 1;
    const int place = phase_ % (2 * last);
    return shown.images[static_cast<std::size_t>(place <= last ? place : 2 * last - place)];
}

void CellModel::take(quint64 id, int frame, const QImage& image, const QString& detail,
                     const QString& failure) {
    const auto found = std::ranges::find_if(
        cells_, [id](const Shown& shown) { return shown.still == id || shown.film == id; });
    if (found == cells_.end())
        return;
    const bool isFilm = found->film == id;
    if (!isFilm)
        found->still = 0;
    else if (frame + 1 == filmFrames || !failure.isEmpty())
        found->film = 0;
    if (found->cell.detail.isEmpty())
        found->cell.detail = detail;
    if (!failure.isEmpty() && found->images.empty())
        found->failure = failure;
    if (!image.isNull() && std::cmp_greater_equal(frame, found->images.size()))
        found->images.push_back(image);
    const QModelIndex place = index(static_cast<int>(found - cells_.begin()));
    emit dataChanged(place, place);
}

int CellModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(cells_.size());
}

QVariant CellModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const Shown& shown = cells_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return shown.cell.title;
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        return shown.failure.isEmpty() ? shown.cell.detail : shown.failure;
    case detailRole:
        return shown.cell.detail;
    case imageRole:
        return image(index.row());
    case failureRole:
        return shown.failure;
    case folderRole:
        return shown.cell.isFolder;
    default:
        return {};
    }
}

} // namespace tarnwick::player
