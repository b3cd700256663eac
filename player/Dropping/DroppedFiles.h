// What is dragged over the window and dropped on it: files, folders and links.
#pragma once

#include <QObject>
#include <QPoint>
#include <QStringList>
#include <functional>
#include <utility>
#include <vector>

class QDropEvent;
class QWidget;

namespace tarnwick::player {

// The content of a drag.
struct DraggedPlaces {
    QStringList files;     // of this system, folders too
    QStringList addresses; // other addresses; the text of a drag that has no addresses

    bool isEmpty() const { return files.isEmpty() && addresses.isEmpty(); }
};

// What a part of the window does with a drag.
struct DropTaker {
    // The places that the part takes; empty: it leaves the drag to others.
    std::function<QStringList(const DraggedPlaces& dragged)> taken;
    // `point` is that of the pointer on the display.
    std::function<void(const QStringList& taken, const QPoint& point)> take;
};

// Reads each drag once, as it enters the window: at the drop Qt cannot always read the data on X11,
// such as after the clipboard was written. On the thread of the windows.
class DroppedFiles : public QObject {
    Q_OBJECT

  public:
    explicit DroppedFiles(QWidget& window);

    // Takes drags anywhere on the window, before its parts see them.
    void addForWindow(DropTaker taker) { everywhere_.push_back(std::move(taker)); }
    // Takes drags over `part`, which lives as long as this and accepts drops from now on. It may be
    // in a dock that floats.
    void add(QWidget& part, DropTaker taker);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool isOfWindow(const QObject* watched) const; // without docks that float
    bool give(const DropTaker& taker, QObject* watched, QDropEvent& event) const;

    QWidget& window_;
    std::vector<DropTaker> everywhere_;
    std::vector<std::pair<QWidget*, DropTaker>> parts_;
    DraggedPlaces dragged_; // of the drag that entered last
};

} // namespace tarnwick::player
