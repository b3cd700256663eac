// The list of performances, with buttons that record, replay and save them.
#pragma once

#include "player/Performances/Performer.h"

#include <QWidget>

class QLabel;
class QSlider;
class QToolButton;
class QTreeWidget;

namespace tarnwick::player {

class PerformancesPanel : public QWidget {
    Q_OBJECT

  public:
    PerformancesPanel(Player& player, Performer& performer, QWidget* parent = nullptr);

  signals:
    void exportWanted(const std::filesystem::path& performance);

  private:
    QToolButton* button(const QString& text, void (PerformancesPanel::*slot)());
    void toggleRecording();
    void toggleReplay();
    void togglePause();
    void open();
    void saveAs();
    void exportMovie();
    void remove();
    void showList();
    void showState();
    void showTime();
    std::filesystem::path chosen() const; // empty without one

    Player& player_;
    Performer& performer_;
    QToolButton* record_;
    QToolButton* replay_;
    QToolButton* pause_;
    QToolButton* save_;
    QToolButton* export_;
    QToolButton* remove_;
    QSlider* position_;
    QLabel* time_;
    QTreeWidget* list_;
};

} // namespace tarnwick::player
