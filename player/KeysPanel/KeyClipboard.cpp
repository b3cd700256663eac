#include "player/KeysPanel/KeyClipboard.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <algorithm>
#include <limits>

namespace tarnwick::player {
namespace {

constexpr const char* format = "application/x-tarnwick-keys+json";
constexpr qsizetype longestText = 16 << 20; // bytes

// Ascending, from 0 on.
void arrange(CopiedKeys& keys) {
    std::erase_if(keys.tracks, [](const auto& track) { return track.second.empty(); });
    double first = std::numeric_limits<double>::max();
    for (auto& [name, track] : keys.tracks) {
        std::ranges::stable_sort(track, {}, &KeyframeTracks::Key::time);
        first = std::min(first, track.front().time);
    }
    for (auto& [name, track] : keys.tracks)
        for (KeyframeTracks::Key& key : track)
            key.time -= first;
}

} // namespace

void putOnClipboard(const CopiedKeys& keys) {
    const QByteArray text = QByteArray::fromStdString(keys.encode());
    auto* data = new QMimeData;
    data->setData(QLatin1String(format), text);
    data->setText(QString::fromUtf8(text));
    QApplication::clipboard()->setMimeData(data);
}

std::optional<CopiedKeys> keysOfClipboard() {
    const QMimeData* data = QApplication::clipboard()->mimeData();
    if (data == nullptr)
        return std::nullopt;
    const QByteArray text = data->hasFormat(QLatin1String(format))
                                ? data->data(QLatin1String(format))
                                : data->text().toUtf8();
    if (text.isEmpty() || text.size() > longestText)
        return std::nullopt;
    try {
        CopiedKeys keys = KeyframeTracks::decode(text.toStdString());
        arrange(keys);
        return keys.tracks.empty() ? std::nullopt : std::optional(std::move(keys));
    } catch (const DocumentError&) { // other text
        return std::nullopt;
    }
}

} // namespace tarnwick::player
