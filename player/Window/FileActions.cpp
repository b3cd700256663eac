#include "player/Window/FileActions.h"

#include "TarnwickCore/Episode/ShaderTemplate.h"
#include "player/Window/OutsideChanges.h"

#include <QFileDialog>
#include <QMessageBox>

namespace tarnwick::player {
namespace {

QString fileFilter() {
    return QObject::tr("Episodes (*.metal);;All files (*)");
}

QString titleOf(const OpenDocument* document) {
    return QString::fromStdString(document->document().title());
}

} // namespace

FileActions::FileActions(Player& player, QMainWindow& window, Actions& actions)
    : QObject(&window), player_(player), window_(window) {
    const auto file = ActionMenu::file;
    actions.add(file, tr("&New"), QKeySequence::New, [this] { newEpisode(); });
    actions.add(file, tr("&Open..."), QKeySequence::Open, [this] { openByDialog(); });
    actions.add(file, tr("&Save"), QKeySequence::Save, [this] { save(player_.active()); });
    actions.add(file, tr("Save &as..."), QKeySequence::SaveAs,
                [this] { saveAs(player_.active()); });
    actions.add(file, tr("&Close"), QKeySequence::Close, [this] { close(player_.active()); });
    outside_ = new OutsideChanges(player, window, actions);
    connect(&player_, &Player::documentAdded, this, &FileActions::watch);
}

void FileActions::newEpisode() {
    player_.add(Document(ShaderTemplate::newShader("Untitled")));
}

void FileActions::open(const QString& file) {
    try {
        player_.open(file.toStdString());
    } catch (const DocumentFileError& error) {
        player_.tell(QString::fromStdString(error.what()));
    }
}

void FileActions::openByDialog() {
    const QStringList files =
        QFileDialog::getOpenFileNames(&window_, tr("Open episodes"), QString(), fileFilter());
    for (const QString& file : files)
        open(file);
}

void FileActions::close(OpenDocument* document) {
    if (document != nullptr && mayClose(document))
        player_.close(document);
}

bool FileActions::mayCloseAll() {
    for (const auto& document : player_.documents())
        if (!mayClose(document.get()))
            return false;
    return true;
}

bool FileActions::save(OpenDocument* document) {
    if (document == nullptr)
        return false;
    if (!document->document().file())
        return saveAs(document);
    const auto write = [this, document] { return written([document] { document->save(); }); };
    return outside_->mayWrite(document, write) && write();
}

bool FileActions::saveAs(OpenDocument* document) {
    if (document == nullptr)
        return false;
    QString file = QFileDialog::getSaveFileName(
        &window_, tr("Save episode"), titleOf(document) + QStringLiteral(".metal"), fileFilter());
    if (file.isEmpty())
        return false;
    if (!file.endsWith(QStringLiteral(".metal"), Qt::CaseInsensitive))
        file += QStringLiteral(".metal");
    return written([document, &file] { document->saveAs(file.toStdString()); });
}

bool FileActions::written(const std::function<void()>& write) {
    try {
        write();
        return true;
    } catch (const DocumentFileError& error) {
        player_.tell(QString::fromStdString(error.what()));
        return false;
    }
}

bool FileActions::mayClose(OpenDocument* document) {
    if (!document->document().isModified())
        return true;
    player_.activate(document);
    const auto answer = QMessageBox::question(
        &window_, tr("Unsaved changes"), tr("Save the changes of %1?").arg(titleOf(document)),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save)
        return save(document);
    return answer == QMessageBox::Discard;
}

void FileActions::watch(OpenDocument* document) {
    if (!document->document().remark().empty())
        player_.tell(QString::fromStdString(document->document().remark()));
}

} // namespace tarnwick::player
