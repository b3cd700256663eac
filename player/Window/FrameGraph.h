// Figures and the times of the last frames, in a corner of the picture.
#pragma once

#include "player/Model/FrameHistory.h"

#include <QString>
#include <QWidget>

namespace tarnwick::player {

class FrameGraph : public QWidget {
    Q_OBJECT

  public:
    explicit FrameGraph(QWidget* parent = nullptr);

    // Lines of text.
    void setText(const QString& text);
    void add(double frameSeconds);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QString text_;
    FrameHistory history_;
};

} // namespace tarnwick::player
