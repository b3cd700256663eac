// The times of the keys panel, the playhead, the loop range, and a bar over the selected keys.
#pragma once

#include "player/KeysPanel/KeysEditor.h"

#include <QWidget>
#include <optional>

namespace tarnwick::player {

// A press above moves the playhead, or an end of the loop. The bar below moves the selection, its
// ends scale it in time.
class KeyRuler : public QWidget {
    Q_OBJECT

  public:
    KeyRuler(KeysEditor& editor, KeysView& view);

    void movePlayhead(); // it is somewhere else now
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    enum class Part { time, bar, first, last, loopStart, loopEnd };
    struct Gesture {
        Part part = Part::time;
        Range span{}; // of the selection when it began
        double fromTime = 0;
        std::optional<KeyDrag> drag{};
    };

    Part partAt(const QPointF& place) const;
    Part loopPartAt(double x) const; // `time` beside the ends of the loop
    void drag(double time, Snap snap);
    void dragKeys(double time, Snap snap);
    int barTop() const;
    void paintMarks(QPainter& painter) const;
    void paintLabel(QPainter& painter, double x, const QString& label) const;
    void paintLoop(QPainter& painter) const;
    void paintBar(QPainter& painter) const;
    void paintPlayhead(QPainter& painter) const;

    KeysEditor& editor_;
    KeysView& view_;
    std::optional<Gesture> gesture_;
};

} // namespace tarnwick::player
