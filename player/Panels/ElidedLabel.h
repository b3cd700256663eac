// A line of text that gives way.
#pragma once

#include <QLabel>

namespace tarnwick::player {

// Plain text in one line; its end is left out where there is no room for it.
class ElidedLabel : public QLabel {
    Q_OBJECT

  public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    QSize minimumSizeHint() const override; // of a few letters

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tarnwick::player
