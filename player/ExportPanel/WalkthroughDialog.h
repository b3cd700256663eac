// What to write as a walkthrough.
#pragma once

#include "player/Exports/EpisodeOrders.h"

#include <QDialog>

class QDoubleSpinBox;
class QLabel;
class QPushButton;
class QRadioButton;

namespace tarnwick::player {

class FileField;
class LastFolders;
class MovieFormatForm;
class StageList;

class WalkthroughDialog : public QDialog {
    Q_OBJECT

  public:
    // `folder` is the episode's; files in its folder `stages` are the proposed versions.
    WalkthroughDialog(LastFolders& folders, EpisodeCopy episode, bool hasSound,
                      const QString& folder, QWidget* parent = nullptr);

    WalkthroughRequest request() const;

  private:
    void layOut();
    void showOutput();
    void showState();

    LastFolders& folders_;
    EpisodeCopy episode_;
    StageList* stages_;
    QRadioButton* movie_;
    QRadioButton* pictures_;
    MovieFormatForm* format_;
    QDoubleSpinBox* pageSeconds_;
    QDoubleSpinBox* start_;
    FileField* output_;
    QPushButton* accept_ = nullptr;
};

} // namespace tarnwick::player
