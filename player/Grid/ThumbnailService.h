// The thumbnails of the windows: passes them to the thread of the windows.
#pragma once

#include "player/App/Player.h"
#include "player/Thumbnails/Thumbnails.h"

#include <QImage>
#include <QObject>
#include <QString>

namespace tarnwick::player {

// On the thread of the windows. One for all grids: their pictures are drawn one at a time.
class ThumbnailService : public QObject {
    Q_OBJECT

  public:
    // Draws less while the player's live picture is slow.
    explicit ThumbnailService(Player& player, QObject* parent = nullptr);

    // Returns the number of the request; request.id is ignored.
    std::uint64_t ask(ThumbnailRequest request);
    void cancel(std::uint64_t id);

  signals:
    // A picture, or a failure with an empty one. `detail` describes the episode.
    void arrived(quint64 id, int frame, const QImage& image, const QString& detail,
                 const QString& failure);

  private:
    void pass(Thumbnail made);

    std::uint64_t lastId_ = 0;
    Thumbnails thumbnails_;
};

} // namespace tarnwick::player
