// The picture as it is now: as a file, and on the clipboard.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"
#include "player/Actions/Actions.h"
#include "player/App/Player.h"
#include "player/ExportPanel/LastFolders.h"
#include "player/Exports/EpisodeOrders.h"
#include "player/Exports/ExportQueue.h"

#include <QMainWindow>
#include <QTimer>
#include <chrono>
#include <functional>
#include <future>
#include <optional>

namespace tarnwick::player {

class SnapshotActions : public QObject {
    Q_OBJECT

  public:
    // With the channels.
    using CopyOf = std::function<EpisodeCopy(const OpenDocument&)>;

    SnapshotActions(Player& player, QMainWindow& window, Actions& actions, ExportQueue& queue,
                    CopyOf copyOf);

  private:
    using Then = std::function<void(const Picture& picture)>;

    void take(Then then);
    void lookForPicture();
    void save();
    void write(const Picture& picture, const QString& file);
    void drawAtSize();
    QString proposedFile() const;
    QString chosenFile();

    Player& player_;
    QMainWindow& window_;
    ExportQueue& queue_;
    CopyOf copyOf_;
    LastFolders folders_;
    std::future<std::optional<Picture>> pending_;
    Then then_;
    QTimer look_;
    std::chrono::steady_clock::time_point patience_;
};

} // namespace tarnwick::player
