// Measures how long the thread of the windows does not answer.
#pragma once

#include <QObject>
#include <QTimer>

namespace tarnwick::player {

// On the thread of the windows. Ticks each millisecond; a gap is the time between two ticks, less
// the interval. It includes the time in which the system runs other processes.
class EventGaps : public QObject {
    Q_OBJECT

  public:
    EventGaps();

    void restart();
    double longest() const { return longest_; } // seconds, since restart()

  private:
    void tick();

    QTimer timer_;
    double last_ = 0; // host seconds
    double longest_ = 0;
};

} // namespace tarnwick::player
