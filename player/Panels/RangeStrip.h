// The ends and the default of a parameter below its slider, as handles that can be dragged.
#pragma once

#include "TarnwickCore/Params.h"

#include <QWidget>

namespace tarnwick::player {

// The handles also move by keys: Up and Down choose one, Left and Right move it, Return opens a
// dialog for exact numbers.
class RangeStrip : public QWidget {
    Q_OBJECT

  public:
    explicit RangeStrip(QWidget* parent = nullptr);

    void setParam(const ParamDecl& param);
    // Of the parameter, for the menu.
    void setValue(double value) { value_ = value; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  public slots:
    void editNumbers();

  signals:
    // Emitted once for each drag.
    void numbersChosen(const tarnwick::ParamNumbers& numbers);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    enum class Handle { minimum, default_, maximum };

    double position(Handle handle) const; // in pixels
    Handle nearest(double x) const;
    ParamNumbers moved(Handle handle, double value) const;
    double valueOf(Handle handle) const;
    void choose(const ParamNumbers& numbers);
    void describe();

    ParamDecl param_;
    ParamNumbers shown_; // while a handle is dragged, those that it would give
    double value_ = 0;
    Handle handle_ = Handle::default_;
    bool isDragging_ = false;
    double pressed_ = 0; // where the drag began
};

} // namespace tarnwick::player
