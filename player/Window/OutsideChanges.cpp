#include "player/Window/OutsideChanges.h"

#include "player/Editor/DifferenceDialog.h"

namespace tarnwick::player {
namespace {

QString titleOf(const OpenDocument* document) {
    return QString::fromStdString(document->document().title());
}

} // namespace

OutsideChanges::OutsideChanges(Player& player, QMainWindow& window, Actions& actions)
    : QObject(&window), player_(player), window_(window) {
    actions.add(ActionMenu::file, tr("Co&mpare with the file..."), {},
                [this] { compareWithFile(); });
    connect(&player_, &Player::documentAdded, this, &OutsideChanges::watch);
    connect(&player_, &Player::documentClosing, this, [this](OpenDocument* document) {
        delete dialogs_[document];
        dialogs_.erase(document);
    });
}

void OutsideChanges::watch(OpenDocument* document) {
    connect(document, &OpenDocument::changedOutside, this, [this, document] { ask(document); });
    connect(document, &OpenDocument::removedOutside, this, [this, document] {
        player_.tell(tr("Another program removed the file of %1. The text is still here; saving "
                        "writes the file again.")
                         .arg(titleOf(document)));
    });
}

bool OutsideChanges::mayWrite(OpenDocument* document, const std::function<void()>& write) {
    if (!document->document().differsOnDisk())
        return true;
    ask(document, write);
    return false;
}

// Shows the differences; a dialog that is open takes the file's newest text.
void OutsideChanges::ask(OpenDocument* document, const std::function<void()>& afterKeeping) {
    std::string file;
    try {
        file = readEpisodeText(*document->document().file()).text;
    } catch (const DocumentFileError& error) {
        player_.tell(QString::fromStdString(error.what()));
        return;
    }
    QPointer<DifferenceDialog>& dialog = dialogs_[document];
    if (dialog) {
        dialog->setFileText(std::move(file));
        return;
    }
    player_.activate(document);
    dialog = new DifferenceDialog(titleOf(document), document->document().text(), std::move(file),
                                  &window_);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &DifferenceDialog::fileTaken, document, [this, document] { take(document); });
    connect(dialog, &DifferenceDialog::mineKept, document, [document, afterKeeping] {
        document->keepMine();
        if (afterKeeping)
            afterKeeping();
    });
    dialog->open();
}

// Undo in the editor brings back the one before.
void OutsideChanges::take(OpenDocument* document) {
    try {
        document->reload();
    } catch (const DocumentFileError& error) {
        player_.tell(QString::fromStdString(error.what()));
    }
}

void OutsideChanges::compareWithFile() {
    OpenDocument* document = player_.active();
    if (document == nullptr || !document->document().file()) {
        player_.tell(tr("The episode has no file yet."));
        return;
    }
    if (document->document().isTextModified() || document->document().differsOnDisk())
        ask(document);
    else
        player_.tell(tr("The file has the same text as this episode."));
}

} // namespace tarnwick::player
