#include "player/Grid/ThumbnailService.h"

#include "player/Thumbnails/ThumbnailStore.h"

#include <utility>

namespace tarnwick::player {
namespace {

constexpr double slowFrame = 1.0 / 45; // seconds

// "Rose Window, fragment, 60 s".
QString detailOf(const Episode& episode) {
    QStringList parts;
    if (episode.metaKeys.contains("episode"))
        parts << QString::fromStdString(episode.meta.title);
    if (episode.kind != ShaderKind::fragment)
        parts << QString::fromUtf8(rawValue(episode.kind).data(),
                                   static_cast<int>(rawValue(episode.kind).size()));
    if (const auto length = episode.length())
        parts << QObject::tr("%1 s").arg(*length);
    return parts.join(QStringLiteral(", "));
}

QImage imageOf(const Picture& picture) {
    if (picture.bytes.empty())
        return {};
    const QImage borrowed(picture.bytes.data(), static_cast<int>(picture.width),
                          static_cast<int>(picture.height),
                          static_cast<qsizetype>(picture.bytesPerRow), QImage::Format_RGB32);
    return borrowed.copy();
}

bool isSlow(const LiveNews& news) {
    return news.divisor > 1 || news.warming || news.frameSeconds > slowFrame;
}

} // namespace

ThumbnailService::ThumbnailService(Player& player, QObject* parent)
    : QObject(parent),
      thumbnails_(thumbnailsFolder(), [this](Thumbnail made) { pass(std::move(made)); }) {
    connect(&player, &Player::newsArrived, this,
            [this, &player] { thumbnails_.setLivePictureIsSlow(isSlow(player.news())); });
    connect(&player, &Player::activeChanged, this, [this, &player] {
        if (player.active() == nullptr)
            thumbnails_.setLivePictureIsSlow(false);
    });
}

std::uint64_t ThumbnailService::ask(ThumbnailRequest request) {
    request.id = ++lastId_;
    thumbnails_.ask(std::move(request));
    return lastId_;
}

void ThumbnailService::cancel(std::uint64_t id) {
    thumbnails_.cancel(id);
}

// On the drawing thread of the thumbnails.
void ThumbnailService::pass(Thumbnail made) {
    const QString detail = made.episode ? detailOf(*made.episode) : QString();
    QMetaObject::invokeMethod(
        this,
        [this, id = made.id, frame = made.frame, image = imageOf(made.picture), detail,
         failure = QString::fromStdString(made.failure)] {
            emit arrived(id, frame, image, detail, failure);
        },
        Qt::QueuedConnection);
}

} // namespace tarnwick::player
