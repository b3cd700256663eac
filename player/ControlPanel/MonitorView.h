// Shows the messages that arrive and what they move.
#pragma once

#include "player/ControlPanel/LiveControl.h"

#include <QWidget>

class QLabel;
class QTreeView;

namespace tarnwick::player {

class MonitorModel;

// Follows the monitor ten times per second while it is visible.
class MonitorView : public QWidget {
    Q_OBJECT

  public:
    explicit MonitorView(LiveControl& control, QWidget* parent = nullptr);

  private:
    void refresh();

    LiveControl& control_;
    MonitorModel* model_;
    QTreeView* list_;
    QLabel* count_;
    QTimer refresh_;
    std::uint64_t shown_ = 0; // revision of the monitor
};

} // namespace tarnwick::player
