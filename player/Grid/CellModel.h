// The cells of a grid of episodes and folders, with their pictures.
#pragma once

#include "player/Grid/ThumbnailService.h"

#include <QAbstractListModel>
#include <QImage>
#include <QPointer>
#include <QString>
#include <vector>

namespace tarnwick::player {

struct Cell {
    QString title;
    QString detail{}; // replaced by the description of the episode once that is known, if empty
    bool isFolder = false;
    bool alwaysMoves = false;  // a film that plays, not only while it is pointed at
    ThumbnailRequest source{}; // the file or the episode of the picture; not of a folder
};

// On the thread of the windows.
class CellModel : public QAbstractListModel {
    Q_OBJECT

  public:
    static constexpr int filmFrames = 8;
    static constexpr std::size_t mostStills = 300; // pictures that are kept in memory

    enum Role : int { detailRole = Qt::UserRole, imageRole, failureRole, folderRole };

    explicit CellModel(ThumbnailService& service, QObject* parent = nullptr);
    ~CellModel() override;

    void setCells(std::vector<Cell> cells);
    const Cell& cell(int row) const { return cells_.at(static_cast<std::size_t>(row)).cell; }

    // Asks for the pictures of these rows and cancels those of the others.
    void setVisible(int first, int last);
    // The row whose film plays; -1: none.
    void setPointedAt(int row);
    // Shows the next pictures of the films. False if no film plays.
    bool advance();

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

  private:
    struct Shown {
        Cell cell;
        std::uint64_t still = 0, film = 0; // requests under way; 0: none
        std::vector<QImage> images{};      // of the film; the first is the still
        QString failure{};
        bool isFilmAsked = false;
    };

    void askStill(Shown& shown, ThumbnailRank rank);
    void askFilm(Shown& shown, ThumbnailRank rank);
    void forget(Shown& shown); // its requests
    void take(quint64 id, int frame, const QImage& image, const QString& detail,
              const QString& failure);
    void dropUnseen(int first, int last);
    bool plays(int row) const;
    const QImage& image(int row) const;

    QPointer<ThumbnailService> service_; // the window may destroy it first
    std::vector<Shown> cells_;
    int first_ = 0, last_ = -1; // visible rows
    int pointedAt_ = -1;
    int phase_ = 0; // of the films
};

} // namespace tarnwick::player
