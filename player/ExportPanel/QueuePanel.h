// The list of exports.
#pragma once

#include "player/Exports/ExportQueue.h"

#include <QWidget>
#include <map>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace tarnwick::player {

class JobRow;

class QueuePanel : public QWidget {
    Q_OBJECT

  public:
    explicit QueuePanel(ExportQueue& queue, QWidget* parent = nullptr);

  private:
    QWidget* head();
    void show(int id);
    void clear();

    ExportQueue& queue_;
    QVBoxLayout* rows_;
    QLabel* empty_;
    QPushButton* clear_ = nullptr;
    std::map<int, JobRow*> shown_;
};

} // namespace tarnwick::player
