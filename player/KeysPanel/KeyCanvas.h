// The mouse and the keyboard on keys, the same for the sheet and the curves.
#pragma once

#include "player/KeysPanel/KeySymbols.h"
#include "player/KeysPanel/KeysEditor.h"

#include <QTimer>
#include <QWidget>
#include <optional>

namespace tarnwick::player {

// A press selects, a drag of a key moves the selected ones (with Ctrl: copies of them), a drag in
// empty space selects a rectangle, the middle button pans, the wheel pans and zooms. Escape
// cancels.
class KeyCanvas : public QWidget {
    Q_OBJECT

  public:
    KeyCanvas(KeysEditor& editor, KeysView& view);

    // The playhead was drawn at the first time and is at the second now.
    void movePlayhead(double from, double to);

  protected:
    virtual std::optional<KeyPlace> keyAt(const QPointF& place) const = 0;
    virtual KeySelection keysIn(const QRectF& area) const = 0;
    // The row of a parameter at a place.
    virtual std::optional<std::size_t> rowAt(const QPointF& place) const = 0;
    // The share of the parameter's range between two heights.
    virtual double shareBetween(double /*from*/, double /*to*/) const { return 0; }
    virtual void pressNames(const QMouseEvent& /*event*/) {}
    virtual void doubleClick(const QPointF& place) = 0; // beside keys
    virtual void scrollBy(const QPointF& pixels);       // by the middle button
    virtual void turnWheel(QWheelEvent* event);

    void paintTimes(QPainter& painter, const QRect& area) const; // loop and frame lines
    void paintOver(QPainter& painter) const;                     // playhead, guide, rectangle
    KeyLook lookOf(const std::string& name, double time) const;
    int contentWidth() const; // without the scroll bar's column

    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool focusNextPrevChild(bool isNext) override;

    KeysEditor& editor_;
    KeysView& view_;
    mutable KeySymbols symbols_;
    std::optional<QPointF> pointer_; // while no button is down

  private:
    struct Gesture {
        enum class Kind { press, box, drag, pan } kind;
        QPointF from, last;
        std::optional<KeyPlace> key{};
        Qt::KeyboardModifiers modifiers{};
        KeySelection before{}; // the selection when it began
        std::optional<KeyDrag> drag{};
        double grabbed = 0;  // seconds: the key's time when the drag began
        double fromTime = 0; // seconds at `from`
    };

    void press(const QMouseEvent& event);
    void selectPressed(const KeyPlace& key, Qt::KeyboardModifiers modifiers);
    void beginDrag();
    void dragTo(const QPointF& place, Qt::KeyboardModifiers modifiers);
    void boxTo(const QPointF& place);
    void release(const Gesture& gesture);
    void cancel();
    void scrollAtEdge();
    void describeFocus();

    std::optional<Gesture> gesture_;
    QTimer atEdge_; // while dragging beyond an end of the shown times
};

} // namespace tarnwick::player
