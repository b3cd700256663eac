// The times that the keys panel shows, and where on its widgets.
#pragma once

#include "player/Keys/Axis.h"

#include <QObject>

namespace tarnwick::player {

// The ruler, the sheet and the curves have the same width and share it.
class KeysView : public QObject {
    Q_OBJECT

  public:
    static constexpr double longest = 86'400; // seconds

    using QObject::QObject;

    Axis axis() const { return {range_, begin_, end_}; }
    const Range& range() const { return range_; }
    // The column of names, in pixels.
    int namesWidth() const { return namesWidth_; }
    // `width` is that of the widgets without their scroll bars, in pixels.
    void setWidths(int names, int width);

    // The seconds from 0 on that showAll() shows; a view that shows all follows it.
    void setLength(double seconds);
    void showAll();
    void show(const Range& time); // with a margin
    void scrollTo(double from);   // seconds
    void pan(double seconds);
    void zoom(double factor, double around); // above 1: closer
    void zoomInMiddle(double factor);
    // Turns to the page of a time that is not shown.
    void reveal(double time);

    bool snaps() const { return snaps_; }
    bool follows() const { return follows_; }
    void setSnaps(bool snaps);
    void setFollows(bool follows); // the playhead, while it moves

  signals:
    void changed();

  private:
    void set(const Range& range);

    Range range_{0, 30};
    double begin_ = 0, end_ = 1; // pixels of the range's ends
    int namesWidth_ = 0;
    double length_ = 30;
    bool showsAll_ = true;
    bool snaps_ = true;
    bool follows_ = false;
};

} // namespace tarnwick::player
