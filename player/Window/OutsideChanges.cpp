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
        delete asked_[document].dialog;
        asked_.erase(document);
    });
}

void OutsideChanges::watch(OpenDocument* document) {
    connect(document, &OpenDocument::changedOutside, this,
            [this, document] { readAndAsk(document); });
    connect(document, &OpenDocument::removedOutside, this, [this, document] {
        player_.tell(tr("Another program removed the file of %1. The text is still here; saving "
                        "writes the file again.")
                         .arg(titleOf(document)));
    });
}

void OutsideChanges::readAndAsk(OpenDocument* document) {
    document->readFile([this, document](const FileText& file) {
        if (file.text)
            ask(document, *file.text);
        else
            player_.tell(QString::fromStdString(file.error));
    });
}

// A dialog that is open takes the file's newest text.
void OutsideChanges::ask(OpenDocument* document, EpisodeText file,
                         std::function<void()> afterKeeping) {
    Asked& asked = asked_[document];
    asked.stamp = file.stamp;
    if (afterKeeping || !asked.dialog)
        asked.afterKeeping = std::move(afterKeeping);
    if (asked.dialog)
        asked.dialog->setFileText(std::move(file.text));
    else
        show(document, std::move(file.text));
}

// After the file was taken, undo in the editor brings back the text before.
void OutsideChanges::show(OpenDocument* document, std::string file) {
    player_.activate(document);
    auto* dialog = new DifferenceDialog(titleOf(document), document->document().text(),
                                        std::move(file), &window_);
    asked_[document].dialog = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &DifferenceDialog::fileTaken, document, &OpenDocument::reload);
    connect(dialog, &DifferenceDialog::mineKept, this, [this, document] {
        const Asked asked = asked_[document];
        document->keepMine(asked.stamp);
        if (asked.afterKeeping)
            asked.afterKeeping();
    });
    dialog->open();
}

void OutsideChanges::compareWithFile() {
    OpenDocument* document = player_.active();
    if (document == nullptr || !document->document().file()) {
        player_.tell(tr("The episode has no file yet."));
        return;
    }
    document->readFile([this, document](const FileText& file) {
        if (!file.text)
            player_.tell(QString::fromStdString(file.error));
        else if (file.text->text != document->document().text())
            ask(document, *file.text);
        else
            player_.tell(tr("The file has the same text as this episode."));
    });
}

} // namespace tarnwick::player
