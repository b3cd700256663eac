#include "player/Sharing/SharingFeature.h"

#include "player/Sharing/AccountDialog.h"
#include "player/Sharing/ShareDialog.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputDialog>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int widthOfLinks = 560; // pixels

} // namespace

SharingFeature::SharingFeature(Player& player, QMainWindow& window, Actions& actions, CopyOf copyOf)
    : QObject(&window), player_(player), window_(window), copyOf_(std::move(copyOf)),
      links_(player, this) {
    actions.add(ActionMenu::share, tr("&Share episode..."), {}, [this] { share(); });
    actions.add(ActionMenu::share, tr("&Open link..."), {}, [this] { openLink(); });
    actions.add(ActionMenu::share, tr("&Account..."), {}, [this] {
        AccountDialog dialog(&window_);
        dialog.exec();
    });
}

void SharingFeature::share() {
    const OpenDocument* document = player_.active();
    if (document == nullptr)
        return;
    const Document& shown = document->document();
    const Episode& episode = *shown.episode();
    const bool hasTitle = episode.meta.title != EpisodeMeta{}.title;
    ShareDialog dialog(copyOf_(*document),
                       QString::fromStdString(hasTitle ? episode.meta.title : shown.title()),
                       &window_);
    dialog.exec();
}

void SharingFeature::openLink() {
    const QString copied = QGuiApplication::clipboard()->text().trimmed();
    QInputDialog dialog(&window_);
    dialog.setWindowTitle(tr("Open link"));
    dialog.setLabelText(tr("Link of the sharing service:"));
    dialog.setTextValue(LinkOpener::isLink(copied) ? copied : QStringLiteral("tarnwick://"));
    dialog.resize(widthOfLinks, dialog.sizeHint().height());
    const bool isGiven = dialog.exec() == QDialog::Accepted;
    if (const QString link = dialog.textValue().trimmed(); isGiven && !link.isEmpty())
        links_.open(link);
}

} // namespace tarnwick::player
