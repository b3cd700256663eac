#include "player/Window/FileActions.h"

#include "TarnwickCore/Episode/ShaderTemplate.h"
#include "player/Window/OutsideChanges.h"

#include <QFileDialog>
#include <utility>

namespace tarnwick::player {
namespace {

QString fileFilter() {
    return QObject::tr("Episodes (*.metal);;All files (*)");
}

// Where dialogs begin: the folder of the document, or the present one.
std::filesystem::path folderOf(const OpenDocument* document) {
    const bool hasFile = document != nullptr && document->document().file();
    return hasFile ? document->document().file()->parent_path() : std::filesystem::path();
}

} // namespace

FileActions::FileActions(Player& player, QMainWindow& window, Actions& actions)
    : QObject(&window), player_(player), window_(window) {
    const auto file = ActionMenu::file;
    actions.add(file, tr("&New"), QKeySequence(tr("Ctrl+N")), [this] { newEpisode(); });
    actions.add(file, tr("&Open..."), QKeySequence(tr("Ctrl+O")), [this] { openByDialog(); });
    actions.add(file, tr("&Save"), QKeySequence(tr("Ctrl+S")), [this] { save(player_.active()); });
    actions.add(file, tr("Save &as..."), {}, [this] { saveAs(player_.active()); });
    outside_ = new OutsideChanges(player, window, actions);
    connect(&player_, &Player::documentAdded, this, &FileActions::watch);
}

void FileActions::newEpisode() {
    player_.add(Document(ShaderTemplate::newShader("Untitled")));
}

// One after the other: the order of the tabs is that of the files.
void FileActions::open(const QStringList& files, std::function<void()> then) {
    if (files.isEmpty()) {
        if (then)
            then();
        return;
    }
    player_.open(files.front().toStdString(), this,
                 [this, rest = files.mid(1), then](OpenDocument*) { open(rest, then); });
}

void FileActions::openByDialog() {
    open(QFileDialog::getOpenFileNames(&window_, tr("Open episodes"),
                                       QString::fromStdString(folderOf(player_.active()).string()),
                                       fileFilter()));
}

bool FileActions::save(OpenDocument* document, Then then) {
    if (document == nullptr)
        return false;
    if (!document->document().file())
        return saveAs(document, std::move(then));
    saveOver(document, OtherText::isKept, then);
    return true;
}

// Where another program saved the file meanwhile, the author is asked first.
void FileActions::saveOver(OpenDocument* document, OtherText otherText, const Then& then) {
    document->save(otherText, [this, document, then](const DocumentSaved& saved) {
        if (saved.other)
            outside_->ask(document, *saved.other,
                          [this, document] { saveOver(document, OtherText::isReplaced, {}); });
        finish(saved, then);
    });
}

bool FileActions::saveAs(OpenDocument* document, Then then) {
    if (document == nullptr)
        return false;
    const auto proposed = folderOf(document) / (document->document().title() + ".metal");
    QString file = QFileDialog::getSaveFileName(
        &window_, tr("Save episode"), QString::fromStdString(proposed.string()), fileFilter());
    if (file.isEmpty())
        return false;
    if (!file.endsWith(QStringLiteral(".metal"), Qt::CaseInsensitive))
        file += QStringLiteral(".metal");
    document->saveAs(file.toStdString(), [this, then = std::move(then)](
                                             const DocumentSaved& saved) { finish(saved, then); });
    return true;
}

void FileActions::finish(const DocumentSaved& saved, const Then& then) {
    if (!saved.error.empty())
        player_.tell(QString::fromStdString(saved.error));
    if (then)
        then(saved.isDone());
}

void FileActions::watch(OpenDocument* document) {
    if (!document->document().remark().empty())
        player_.tell(QString::fromStdString(document->document().remark()));
}

} // namespace tarnwick::player
