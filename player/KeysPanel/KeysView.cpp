#include "player/KeysPanel/KeysView.h"

#include <algorithm>

namespace tarnwick::player {
namespace {

constexpr int edge = 10; // pixels beside the first and the last time
constexpr RangeLimits limits{.lowest = 0, .highest = KeysView::longest, .shortest = 0.1};

} // namespace

void KeysView::set(const Range& range) {
    if (range == range_)
        return;
    range_ = range;
    emit changed();
}

void KeysView::setWidths(int names, int width) {
    const Axis before = axis();
    namesWidth_ = names;
    begin_ = names + edge;
    end_ = std::max(width - edge, names + 2 * edge);
    if (axis() != before)
        emit changed();
}

void KeysView::setLength(double seconds) {
    length_ = std::clamp(seconds, limits.shortest, limits.highest);
    if (showsAll_)
        set({0, length_});
}

void KeysView::showAll() {
    showsAll_ = true;
    set({0, length_});
}

void KeysView::show(const Range& time) {
    showsAll_ = false;
    set(framed(time, 0.1, {.lowest = 0, .highest = longest, .shortest = 1}));
}

void KeysView::scrollTo(double from) {
    pan(from - range_.from);
}

void KeysView::pan(double seconds) {
    const Range wanted = panned(range_, seconds, limits);
    showsAll_ = showsAll_ && wanted == range_;
    set(wanted);
}

void KeysView::zoom(double factor, double around) {
    showsAll_ = false;
    set(zoomed(range_, around, factor, limits));
}

void KeysView::zoomInMiddle(double factor) {
    zoom(factor, (range_.from + range_.to) / 2);
}

void KeysView::reveal(double time) {
    if (!range_.contains(time))
        scrollTo(time - range_.length() * 0.1);
}

void KeysView::setSnaps(bool snaps) {
    snaps_ = snaps;
    emit changed();
}

void KeysView::setFollows(bool follows) {
    follows_ = follows;
    emit changed();
}

} // namespace tarnwick::player
