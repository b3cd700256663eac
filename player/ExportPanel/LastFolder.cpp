#include "player/ExportPanel/LastFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
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

QSettings settings() {
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("tarnwick"),
                     QStringLiteral("exports"));
}

QString chosen(FolderKind kind) {
    const QString folder = settings().value(QLatin1String(rowOf(kind).key)).toString();
    return QFileInfo(folder).isDir() ? folder : QString();
}

} // namespace

QString lastFolder(FolderKind kind) {
    if (const QString folder = chosen(kind); !folder.isEmpty())
        return folder;
    const QString usual = QStandardPaths::writableLocation(rowOf(kind).place);
    return QFileInfo(usual).isDir() ? usual : QDir::homePath();
}

bool hasLastFolder(FolderKind kind) {
    return !chosen(kind).isEmpty();
}

void keepLastFolder(FolderKind kind, const QString& folder) {
    settings().setValue(QLatin1String(rowOf(kind).key), folder);
}

} // namespace tarnwick::player
