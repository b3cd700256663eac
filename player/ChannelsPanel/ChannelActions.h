// Connects the channels to the window: the panel, its actions, and files dropped on the picture.
#pragma once

#include "player/Actions/Actions.h"
#include "player/ChannelsPanel/DocumentChannels.h"

#include <QStringList>
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
    ChannelActions(Player& player, QMainWindow& window, Actions& actions, QWidget& picture);

    QWidget* panel() const { return panel_; }
    DocumentChannels& channels() { return channels_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // `place` is that of the pointer on the display.
    void take(const QStringList& files, const QPoint& place);
    void askForChannel(const QString& file, const QPoint& place);

    Player& player_;
    QWidget& picture_;
    DocumentChannels channels_;
    QWidget* panel_;
    std::array<ChannelRow*, channelCount> rows_{};
    QStringList dragged_; // the files of the last drag
    QTimer pictures_;     // shows the newest pictures in the panel
};

} // namespace tarnwick::player
