#include "player/Window/Ending.h"

#include <QGuiApplication>
#include <QSessionManager>
#include <QSocketNotifier>
#include <QThread>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int endedByQt = 1; // the status with which Qt ends the process

} // namespace

Ending::Ending(Player& player, std::function<void(const std::string&)> say)
    : QObject(QCoreApplication::instance()), player_(player), say_(std::move(say)),
      before_(qInstallMessageHandler(&Ending::hear)) {
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

Ending::~Ending() {
    qInstallMessageHandler(before_);
}

// When the connection to the X server or the compositor breaks, Qt prints a warning, "The X11
// connection broke (error 1)", and calls exit(). No event tells it. The destructors of exit()
// destroy what the driver's compiler threads still use, so that a draft must be written before.
void Ending::hear(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const QCoreApplication* application = QCoreApplication::instance();
    Ending* ending = nullptr;
    if (application != nullptr && QThread::currentThread() == application->thread())
        ending = application->findChild<Ending*>(QString(), Qt::FindDirectChildrenOnly);
    if (ending == nullptr) {
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
        return;
    }
    ending->before_(type, context, message);
    if (message.startsWith(QStringLiteral("The X11 connection broke")) ||
        message.startsWith(QStringLiteral("The Wayland connection")))
        ending->endWithoutDisplay();
}

void Ending::endWithoutDisplay() {
    endSoon(endedByQt); // a disk may not answer
    player_.keepDraftsNow();
    say_("The connection to the display broke. Unsaved work is kept and offered at the next "
         "start.");
    std::this_thread::sleep_for(std::chrono::hours(1)); // endSoon() ends the process
    std::abort();
}

} // namespace tarnwick::player
