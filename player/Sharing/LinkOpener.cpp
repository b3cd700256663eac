#include "player/Sharing/LinkOpener.h"

#include "TarnwickCore/Service/OpenLink.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "player/App/Background.h"
#include "player/Sharing/ServiceOrders.h"

#include <QUrl>
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

// The path of the episode's file, if `path` is that of the file or of its page; or empty.
QString filePath(QString path) {
    if (path.endsWith(QStringLiteral(".metal"), Qt::CaseInsensitive))
        return path;
    while (path.endsWith(QLatin1Char('/')))
        path.chop(1);
    path += QStringLiteral("/source.metal");
    return OpenLink::describe(path.toStdString()).item ? path : QString();
}

} // namespace

LinkOpener::LinkOpener(Player& player, QObject* parent) : QObject(parent), player_(player) {}

QString LinkOpener::linkOf(const QString& text) {
    if (text.startsWith(QStringLiteral("tarnwick:"), Qt::CaseInsensitive))
        return text;
    QUrl address(text);
    const std::string host = address.host().toStdString();
    const QString path = filePath(address.path());
    if (address.scheme() != QStringLiteral("https") || host != OpenLink::siteHost || path.isEmpty())
        return {};
    address.setPath(path);
    return QStringLiteral("tarnwick://open?src=") +
           QString::fromLatin1(QUrl::toPercentEncoding(
               address.toString(QUrl::FullyEncoded | QUrl::RemoveFragment)));
}

void LinkOpener::open(const QString& text) {
    const QString link = isLink(text) ? linkOf(text) : text; // the child refuses other text
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
