#include "player/Window/Ending.h"

#include <QGuiApplication>
#include <QSessionManager>
#include <QSocketNotifier>
#include <QThread>
#include <cstdlib>
#include <utility>

namespace tarnwick::player {

struct Ending::Exit {
    Player* player; // null once main() ends the program
    std::function<void(const std::string&)> say;
};

Ending::Ending(Player& player, std::function<void(const std::string&)> say)
    : player_(player), exit_(new Exit{&player, std::move(say)}) {
    if (signals_.descriptor() >= 0) {
        auto* arrival = new QSocketNotifier(signals_.descriptor(), QSocketNotifier::Read, this);
        connect(arrival, &QSocketNotifier::activated, this, [this, arrival] {
            arrival->setEnabled(false);
            if (!signals_.arrived())
                return;
            player_.keepDraftsNow();
            signals_.answer();
            QCoreApplication::exit();
        });
    }
    // The drafts are kept, so that nothing is asked.
    if (auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        connect(
            application, &QGuiApplication::commitDataRequest, this,
            [this](QSessionManager&) { player_.keepDraftsNow(); }, Qt::DirectConnection);
    watchExit();
}

Ending::~Ending() {
    exit_->player = nullptr;
}

// Qt calls exit() when the connection to the X server or the compositor breaks. No event tells it
// before.
void Ending::watchExit() {
    on_exit(
        [](int status, void* data) {
            const auto& exit = *static_cast<const Exit*>(data);
            if (exit.player == nullptr || QThread::currentThread() != exit.player->thread())
                return;
            endSoon(status); // a disk or a driver may not answer
            exit.player->keepDraftsNow();
            exit.say("The connection to the display broke. Unsaved work is kept and offered at the "
                     "next start.");
        },
        exit_);
}

} // namespace tarnwick::player
