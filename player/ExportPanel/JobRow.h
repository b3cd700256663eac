// One export in the list of exports.
#pragma once

#include "player/Exports/ExportQueue.h"

#include <QFrame>

class QLabel;
class QProgressBar;
class QPushButton;

namespace tarnwick::player {

class JobRow : public QFrame {
    Q_OBJECT

  public:
    JobRow(ExportQueue& queue, int id, QWidget* parent = nullptr);

    void show(const ExportJob& job);

  private:
    void showThumbnail(const ExportJob& job);
    QPushButton* addButton(class QLayout& row, const QString& text, const QString& spoken);
    void open(bool isFolder);

    ExportQueue& queue_;
    int id_;
    QLabel* thumbnail_;
    QLabel* title_;
    QLabel* state_;
    QProgressBar* bar_;
    QPushButton* cancel_;
    QPushButton* open_;
    QPushButton* folder_;
    QPushButton* again_;
    QPushButton* remove_;
};

} // namespace tarnwick::player
