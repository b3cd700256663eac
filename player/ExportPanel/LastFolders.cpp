#include "player/ExportPanel/LastFolders.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <array>

namespace tarnwick::player {
namespace {

struct Row {
    const char* key;
    QStandardPaths::StandardLocation place;
};

constexpr std::array<Row, 4> rows{{
    {"folders/movies", QStandardPaths::MoviesLocation},
    {"folders/pictures", QStandardPaths::PicturesLocation},
    {"folders/packages", QStandardPaths::DocumentsLocation},
    {"folders/performances", QStandardPaths::DocumentsLocation},
}};

const Row& rowOf(FolderKind kind) {
    return rows[static_cast<std::size_t>(kind)];
}

} // namespace

QString LastFolders::chosen(FolderKind kind) const {
    const QString folder = kept_.value(QLatin1String(rowOf(kind).key)).toString();
    return QFileInfo(folder).isDir() ? folder : QString();
}

QString LastFolders::of(FolderKind kind) const {
    if (const QString folder = chosen(kind); !folder.isEmpty())
        return folder;
    const QString usual = QStandardPaths::writableLocation(rowOf(kind).place);
    return QFileInfo(usual).isDir() ? usual : QDir::homePath();
}

bool LastFolders::isChosen(FolderKind kind) const {
    return !chosen(kind).isEmpty();
}

void LastFolders::keep(FolderKind kind, const QString& folder) {
    kept_.set(QLatin1String(rowOf(kind).key), folder);
}

} // namespace tarnwick::player
