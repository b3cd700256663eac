#include "player/Window/Ending.h"

#include <QGuiApplication>
#include <QSessionManager>
#include <QSocketNotifier>

namespace tarnwick::player {

Ending::Ending(Player& player) : player_(player) {
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
}

} // namespace tarnwick::player
