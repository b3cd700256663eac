// tarnwick-player: the desktop program in which episodes are written and played.
#include "TarnwickBase/Crashes.h"
#include "TarnwickBase/EndNow.h"
#include "TarnwickBase/EndSignals.h"
#include "TarnwickBase/FreedMemory.h"
#include "TarnwickBase/Quoted.h"
#include "TarnwickBase/Status.h"
#include "TarnwickBase/Version.h"
#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/CommandLine/Help.h"
#include "TarnwickCore/Text/TerminalText.h"
#include "TarnwickPlatform/Sound/SoundOutput.h"
#include "player/App/Background.h"
#include "player/ChannelsPanel/ChannelActions.h"
#include "player/CommandLine/PlayerForm.h"
#include "player/ControlPanel/LiveControl.h"
#include "player/SoundPanel/SoundControls.h"
#include "player/Window/Ending.h"
#include "player/Window/MainWindow.h"

#include <QApplication>
#include <QIcon>
#include <QMessageBox>
#include <cstdio>
#include <memory>
#include <string>

namespace tarnwick::player {
namespace {

QString questionAbout(const std::vector<LeftDraft>& left) {
    if (left.size() == 1)
        return QObject::tr("The player ended with unsaved changes in %1. Open it again?")
            .arg(QString::fromStdString(left.front().draft.title));
    return QObject::tr("The player ended with unsaved changes in %1 episodes. Open them again?")
        .arg(left.size());
}

struct Recovered {
    Document document;
    std::unique_ptr<Autosave> autosave;
};

// Blocks.
std::vector<Recovered> recovered(const std::vector<LeftDraft>& left, bool isWanted) {
    std::vector<Recovered> all;
    for (const LeftDraft& one : left) {
        auto autosave = Autosave::takeOver(one.folder);
        if (!autosave)
            continue; // another player took it meanwhile
        if (isWanted)
            all.push_back({Document::recovered(one.draft), std::move(autosave)});
        else
            autosave->discard();
    }
    return all;
}

// Offers the unsaved work of a player that did not end by itself.
void recover(Player& player, MainWindow& window) {
    const auto ask = [&player, &window](const std::vector<LeftDraft>& left) {
        if (left.empty())
            return;
        const bool isWanted = QMessageBox::question(&window, QObject::tr("Unsaved work"),
                                                    questionAbout(left)) == QMessageBox::Yes;
        inBackground(
            &window,
            [left, isWanted] {
                return std::make_shared<std::vector<Recovered>>(recovered(left, isWanted));
            },
            [&player](const std::shared_ptr<std::vector<Recovered>>& all) {
                for (Recovered& one : *all)
                    player.add(std::move(one.document), std::move(one.autosave));
            });
    };
    inBackground(
        &window, [] { return leftDrafts(draftsFolder()); }, ask);
}

// Throws UsageError.
std::vector<NumberedChoice> channelsOf(const Arguments& arguments) {
    std::vector<NumberedChoice> channels;
    for (const std::string& text : arguments.values("--channel")) {
        const auto channel = numberedChoice(text);
        if (!channel)
            throw UsageError("--channel is " + tarnwick::quoted(text) +
                             ", which is not N=FILE with N from 0 to 3.");
        channels.push_back(*channel);
    }
    return channels;
}

int play(const Arguments& arguments, int count, char** words) {
    const std::vector<NumberedChoice> channels = channelsOf(arguments);
    SoundOutput::askForServerBuffer();
    QApplication application(count, words);
    QApplication::setApplicationDisplayName(QStringLiteral("Tarnwick"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("tarnwick")));
    QApplication::setDesktopFileName(QStringLiteral("tarnwick-player"));
    Player player;
    MainWindow window(player);
    const Ending ending(player, [](const std::string& sentence) {
        std::fprintf(stderr, "tarnwick-player: %s\n", terminalText(sentence).c_str());
    });
    window.show();
    recover(player, window);
    QStringList files;
    for (const std::string& file : arguments.operands())
        files << QString::fromStdString(file);
    window.open(files, [&player, &window, channels] {
        for (const auto& [channel, choice] : channels)
            if (OpenDocument* document = player.active())
                window.channels().channels().choose(*document, channel, choice);
    });
    window.findChild<SoundControls*>()->setInput(SoundInput::of(arguments.textOf("--audio")));
    if (arguments.has("--osc"))
        window.findChild<LiveControl*>()->listen(
            static_cast<std::uint16_t>(arguments.unsignedOf("--osc")));
    const int status = QApplication::exec();
    if (!ending.isBySignal())
        endSoon(status); // the device may work for longer
    return status;
}

int run(int count, char** words) {
    const std::span<const char* const> all(words, static_cast<std::size_t>(count));
    try {
        const Arguments arguments(playerForm, all.subspan(all.empty() ? 0 : 1));
        if (arguments.has("--help"))
            std::fputs(helpText("tarnwick-player", playerForm, playerSummary).c_str(), stdout);
        else if (arguments.has("--version"))
            std::printf("%s\n", programName().c_str());
        else
            return play(arguments, count, words);
        return static_cast<int>(Status::done);
    } catch (const UsageError& error) {
        std::fprintf(stderr, "tarnwick-player: %s --help lists the options.\n",
                     terminalText(error.what()).c_str());
        return static_cast<int>(Status::misused);
    }
}

} // namespace
} // namespace tarnwick::player

int main(int count, char** words) {
    tarnwick::tellOfCrashes("tarnwick-player");
    tarnwick::keepFreedMemory();
    const tarnwick::EndSignals endSignals;
    const int status = tarnwick::player::run(count, words);
    endSignals.endIfArrived();
    tarnwick::endNow(status); // a driver may keep a thread, which the player then left
}
