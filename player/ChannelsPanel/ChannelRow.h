// One channel: its picture, its source's name, and the buttons that choose and clear it.
#pragma once

#include "player/ChannelsPanel/DocumentChannels.h"
#include "player/Dropping/DroppedFiles.h"

#include <QWidget>

class QLabel;
class QMenu;
class QToolButton;

namespace tarnwick::player {

class ChannelRow : public QWidget {
    Q_OBJECT

  public:
    // A file that is dropped on the row becomes the source.
    ChannelRow(Player& player, DocumentChannels& channels, std::size_t channel,
               DroppedFiles& dropped);

    void chooseFile(); // by a dialog
    void clear();
    void showChoice();
    // Shows the newest picture of a source.
    void showPicture();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void choose(const ChannelChoice& choice);
    void fillMenu();
    void addCameras(QMenu* menu);
    void addEpisodes(QMenu* menu);

    Player& player_;
    DocumentChannels& channels_;
    std::size_t channel_;
    QLabel* picture_;
    QLabel* name_;
    QToolButton* choose_;
    QToolButton* clear_;
    QMenu* menu_;
    std::uint64_t shown_ = 0; // FrameSource::number of the picture
};

} // namespace tarnwick::player
