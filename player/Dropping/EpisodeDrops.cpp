#include "player/Dropping/EpisodeDrops.h"

#include <QFileInfo>
#include <algorithm>

namespace tarnwick::player {
namespace {

bool isOpened(const QString& file) {
    const QFileInfo info(file);
    const QString ending = info.suffix().toLower();
    return ending == QLatin1String("metal") || ending == QLatin1String("json") || info.isDir();
}

} // namespace

DropTaker episodeDrops(std::function<bool(const QString& text)> isLink,
                       std::function<void(const QString& place)> open) {
    return {.taken =
                [isLink = std::move(isLink)](const DraggedPlaces& dragged) {
                    const bool isWhole = std::ranges::all_of(dragged.files, isOpened) &&
                                         std::ranges::all_of(dragged.addresses, isLink);
                    return isWhole ? dragged.files + dragged.addresses : QStringList();
                },
            .take =
                [open = std::move(open)](const QStringList& places, const QPoint&) {
                    for (const QString& place : places)
                        open(place);
                }};
}

} // namespace tarnwick::player
