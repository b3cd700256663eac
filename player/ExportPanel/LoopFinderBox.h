// Finds the length at which the episode loops, and shows the seam.
#pragma once

#include "player/Exports/EpisodeOrders.h"
#include "player/Exports/OrderRun.h"

#include <QGroupBox>
#include <QImage>
#include <functional>
#include <memory>

class QDoubleSpinBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace tarnwick::player {

class LoopFinderBox : public QGroupBox {
    Q_OBJECT

  public:
    // `request` gives the episode, the start and the frame rate of a search.
    explicit LoopFinderBox(std::function<LoopRequest()> request, QWidget* parent = nullptr);

    void setAround(double seconds); // the length near which is searched
    double crossfade() const;       // seconds

  signals:
    // A length was found and taken; both in seconds.
    void lengthTaken(double start, double length);
    void changed();

  private:
    void addRows();
    void findOrCancel();
    void showEnd(const ChildResult& result);
    void showFound(const std::string& json);
    void showSeam(const QImage& seam);
    void showState();

    std::function<LoopRequest()> request_;
    QDoubleSpinBox* around_;
    QDoubleSpinBox* range_;
    QDoubleSpinBox* crossfade_;
    QPushButton* find_;
    QPushButton* take_;
    QProgressBar* bar_;
    QLabel* text_;
    QLabel* seam_;
    std::unique_ptr<OrderRun> run_; // of a search; null otherwise
    double start_ = 0, length_ = 0; // found; 0: none
};

} // namespace tarnwick::player
