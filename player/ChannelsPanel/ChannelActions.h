// Connects the channels to the window: the panel, its actions, and files dropped on the picture.
#pragma once

#include "player/Actions/Actions.h"
#include "player/ChannelsPanel/DocumentChannels.h"
#include "player/Dropping/DroppedFiles.h"

#include <QTimer>
#include <QWidget>
#include <array>

class QMainWindow;

namespace tarnwick::player {

class ChannelRow;

class ChannelActions : public QObject {
    Q_OBJECT

  public:
    // A file that is dropped on `picture` becomes the source of the first black channel. An episode
    // is left to the window, which opens it.
    ChannelActions(Player& player, QMainWindow& window, Actions& actions, QWidget& picture,
                   DroppedFiles& dropped);

    QWidget* panel() const { return panel_; }
    DocumentChannels& channels() { return channels_; }

  private:
    // `point` is that of the pointer on the display.
    void take(const QStringList& files, const QPoint& point);
    void askForChannel(const QString& file, const QPoint& point);

    Player& player_;
    QWidget& picture_;
    DocumentChannels channels_;
    QWidget* panel_;
    std::array<ChannelRow*, channelCount> rows_{};
    QTimer pictures_; // shows the newest pictures in the panel
};

} // namespace tarnwick::player
