#include "player/Sharing/LinkOpener.h"

#include "TarnwickPlatform/Bundle/TextFile.h"
#include "player/App/Background.h"
#include "player/Sharing/ServiceOrders.h"

#include <filesystem>
#include <optional>
#include <utility>

namespace tarnwick::player {
namespace {

struct Read {
    std::optional<std::string> text;
    std::string title;
};

// A new document whose whole text is unsaved work.
Document unsaved(const Read& read) {
    Document document("", read.title);
    document.setText(*read.text);
    return document;
}

} // namespace

LinkOpener::LinkOpener(Player& player, QObject* parent) : QObject(parent), player_(player) {}

bool LinkOpener::isLink(const QString& text) {
    return text.startsWith(QStringLiteral("tarnwick:"), Qt::CaseInsensitive);
}

void LinkOpener::open(const QString& link) {
    auto* run = new OrderRun(openOrder(link.toStdString()), commandLineProgram(), this);
    connect(run, &OrderRun::finished, this,
            [this, run](const ChildResult& result) { take(run, result); });
    run->start();
}

void LinkOpener::take(OrderRun* run, const ChildResult& result) {
    run->deleteLater();
    if (!result.isDone) {
        player_.tell(QString::fromStdString(result.sentence));
        return;
    }
    const std::filesystem::path file =
        QString::fromStdString(result.output).trimmed().toStdString();
    inBackground(
        this,
        [file, files = run->files()] { // which keep the file
            return Read{.text = fileText(file), .title = file.stem().string()};
        },
        [this](const Read& read) {
            if (read.text)
                player_.add(unsaved(read));
            else
                player_.tell(tr("The shader of the link cannot be read."));
        });
}

} // namespace tarnwick::player
