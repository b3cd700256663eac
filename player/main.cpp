// tarnwick-player: the desktop program in which episodes are written and played.
#include "TarnwickBase/EndSignals.h"
#include "TarnwickBase/FreedMemory.h"
#include "player/Window/MainWindow.h"

#include <QApplication>
#include <QMessageBox>

namespace {

// Offers the unsaved work of a player that did not end by itself.
bool recover(tarnwick::player::Player& player, tarnwick::player::MainWindow& window) {
    using namespace tarnwick::player;
    const auto left = leftDrafts(draftsFolder());
    if (left.empty())
        return false;
    const auto answer = QMessageBox::question(
        &window, QObject::tr("Unsaved work"),
        QObject::tr("The player ended with %n unsaved episode(s). Open them again?", nullptr,
                    static_cast<int>(left.size())));
    for (const LeftDraft& one : left) {
        auto autosave = Autosave::takeOver(one.folder);
        if (answer == QMessageBox::Yes)
            player.add(Document::recovered(one.draft), std::move(autosave));
        else if (autosave)
            autosave->discard();
    }
    return answer == QMessageBox::Yes;
}

} // namespace

int main(int count, char** words) {
    tarnwick::keepFreedMemory();
    const tarnwick::EndSignals endSignals;
    // Only the picture is a native child window.
    QApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    QApplication application(count, words);
    QApplication::setApplicationName(QStringLiteral("tarnwick-player"));
    QApplication::setApplicationDisplayName(QStringLiteral("Tarnwick"));
    QApplication::setDesktopFileName(QStringLiteral("tarnwick-player"));
    int status = 0;
    {
        tarnwick::player::Player player;
        tarnwick::player::MainWindow window(player);
        window.show();
        const bool hasRecovered = recover(player, window);
        const QStringList files = QApplication::arguments().mid(1);
        for (const QString& file : files)
            window.open(file);
        if (files.empty() && !hasRecovered)
            window.newEpisode();
        status = QApplication::exec();
        tarnwick::endSoon(status); // the device may work for longer
    }
    return status;
}
