#include "player/ExportPanel/SnapshotActions.h"

#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickPlatform/Pictures/PNG.h"
#include "player/App/Background.h"
#include "player/ExportPanel/DocumentCopy.h"
#include "player/ExportPanel/FileField.h"
#include "player/ExportPanel/PictureImage.h"
#include "player/ExportPanel/SnapshotDialog.h"
#include "player/Exports/NewPlace.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <cmath>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int lookInterval = 5; // milliseconds
constexpr std::chrono::seconds longestWait{5};

// One sentence: where it is, or why it is nowhere.
QString written(const Picture& picture, const std::filesystem::path& wanted) {
    try {
        const TemporaryFolder beside(wanted.parent_path(), wanted.filename().native());
        const std::filesystem::path unfinished = beside.path() / wanted.filename();
        writePNG(picture, unfinished);
        const std::filesystem::path place = movedToNewPlace(unfinished, wanted);
        return QObject::tr("The picture is saved as %1, and is on the clipboard.")
            .arg(QString::fromStdString(place.string()));
    } catch (const TemporaryFolderError& error) {
        return QObject::tr("%1 cannot be written: %2.")
            .arg(QString::fromStdString(wanted.string()), QString::fromStdString(error.reason));
    } catch (const std::runtime_error& error) {
        return QString::fromStdString(error.what());
    }
}

} // namespace

SnapshotActions::SnapshotActions(Player& player, QMainWindow& window, Actions& actions,
                                 ExportQueue& queue, CopyOf copyOf)
    : QObject(&window), player_(player), window_(window), queue_(queue), copyOf_(std::move(copyOf)),
      folders_(player.userSettings()) {
    actions.add(ActionMenu::file, tr("Save snaps&hot"), QKeySequence(tr("Ctrl+Shift+S")),
                [this] { save(); });
    actions.add(ActionMenu::file, tr("Save snapshot at si&ze..."),
                QKeySequence(tr("Ctrl+Alt+Shift+S")), [this] { drawAtSize(); });
    actions.add(ActionMenu::file, tr("Copy &picture"), QKeySequence(tr("Ctrl+Shift+C")), [this] {
        take([this](const Picture& picture) {
            QGuiApplication::clipboard()->setImage(imageOf(picture));
            player_.tell(tr("The picture is on the clipboard."));
        });
    });
    look_.setInterval(lookInterval);
    connect(&look_, &QTimer::timeout, this, &SnapshotActions::lookForPicture);
}

// A snapshot that is still awaited is replaced.
void SnapshotActions::take(Then then) {
    pending_ = player_.picture().snapshot();
    then_ = std::move(then);
    patience_ = std::chrono::steady_clock::now() + longestWait;
    look_.start();
}

void SnapshotActions::lookForPicture() {
    if (pending_.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        if (std::chrono::steady_clock::now() < patience_)
            return;
        look_.stop();
        player_.tell(tr("The picture is still being drawn."));
        return;
    }
    look_.stop();
    const std::optional<Picture> picture = pending_.get();
    if (picture)
        then_(*picture);
    else
        player_.tell(tr("There is no picture yet."));
}

// The folder is asked for once; then each snapshot is a new file in it.
void SnapshotActions::save() {
    take([this](const Picture& picture) {
        QGuiApplication::clipboard()->setImage(imageOf(picture));
        const QString file =
            folders_.isChosen(FolderKind::pictures) ? proposedFile() : chosenFile();
        if (!file.isEmpty())
            write(picture, file);
    });
}

void SnapshotActions::write(const Picture& picture, const QString& file) {
    folders_.keep(FolderKind::pictures, QFileInfo(file).absolutePath());
    inBackground(
        this,
        [picture, path = std::filesystem::path(file.toStdString())] {
            return written(picture, path);
        },
        [this](const QString& sentence) { player_.tell(sentence); });
}

QString SnapshotActions::proposedFile() const {
    const OpenDocument* document = player_.active();
    const QString title =
        document
            ? QFileInfo(QString::fromStdString(copyOf(*document).fileName())).completeBaseName()
            : QStringLiteral("Snapshot");
    return folders_.of(FolderKind::pictures) + QLatin1Char('/') + title + QStringLiteral(".png");
}

QString SnapshotActions::chosenFile() {
    QString file =
        newFileName(&window_, tr("Save snapshot"), proposedFile(), tr("Pictures (*.png)"));
    if (!file.isEmpty() && !file.endsWith(QStringLiteral(".png"), Qt::CaseInsensitive))
        file += QStringLiteral(".png");
    return file;
}

// Drawn by a child process: the size may be one that the live picture cannot have.
void SnapshotActions::drawAtSize() {
    const OpenDocument* document = player_.active();
    if (document == nullptr)
        return;
    const double time = player_.news().time;
    SnapshotDialog dialog(time, proposedFile(), &window_);
    StillRequest request{
        .episode = copyOf_(*document),
        .time = time,
        .frame = static_cast<std::uint32_t>(std::llround(time * Transport::framesPerSecond))};
    if (dialog.exec() != QDialog::Accepted)
        return;
    request.size = dialog.size();
    request.hasAlpha = dialog.hasAlpha();
    request.output = dialog.file().toStdString();
    folders_.keep(FolderKind::pictures, QFileInfo(dialog.file()).absolutePath());
    for (const std::string& remark : request.episode.inputs.remarks)
        player_.tell(QString::fromStdString(remark));
    queue_.add(stillOrder(request));
}

} // namespace tarnwick::player
