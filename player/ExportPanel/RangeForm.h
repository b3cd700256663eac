// The range of time of an export: the whole episode, the loop of the transport, or from and to.
#pragma once

#include "TarnwickCore/Performance/Transport.h"

#include <QWidget>
#include <optional>

class QDoubleSpinBox;
class QRadioButton;

namespace tarnwick::player {

class RangeForm : public QWidget {
    Q_OBJECT

  public:
    // `length` is the episode's, in seconds.
    RangeForm(double length, const std::optional<LoopRange>& loop, QWidget* parent = nullptr);

    double start() const;    // seconds of the episode
    double duration() const; // seconds; at or below 0 if the range is empty
    void setRange(double start, double duration);

  signals:
    void changed();

  private:
    double length_;
    std::optional<LoopRange> loop_;
    QRadioButton* whole_;
    QRadioButton* looped_;
    QRadioButton* custom_;
    QDoubleSpinBox* from_;
    QDoubleSpinBox* to_;
};

// Seconds with thousandths.
QDoubleSpinBox* secondsBox(const QString& name, double most);

} // namespace tarnwick::player
