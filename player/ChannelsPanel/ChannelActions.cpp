#include "player/ChannelsPanel/ChannelActions.h"

#include "player/ChannelsPanel/ChannelRow.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMimeData>
#include <QVBoxLayout>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int pictureInterval = 250; // milliseconds

// The dropped files that are sources: all but episodes.
QStringList sourcesOf(const QMimeData& data) {
    QStringList files;
    for (const QUrl& url : data.urls())
        if (url.isLocalFile() &&
            choiceOf(url.toLocalFile().toStdString()).kind == ChannelChoice::Kind::file)
            files.append(url.toLocalFile());
    return files;
}

} // namespace

ChannelActions::ChannelActions(Player& player, QMainWindow& window, Actions& actions,
                               QWidget& picture)
    : QObject(&window), player_(player), picture_(picture), channels_(player, nullptr) {
    panel_ = new QWidget;
    panel_->setAccessibleName(tr("Channels"));
    auto* column = new QVBoxLayout(panel_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        rows_[channel] = new ChannelRow(player_, channels_, channel);
        column->addWidget(rows_[channel]);
        actions.add(ActionMenu::live, tr("Source of channel &%1...").arg(channel),
                    QKeySequence(tr("Ctrl+K, %1").arg(channel)),
                    [row = rows_[channel]] { row->chooseFile(); });
    }
    column->addStretch(1);
    const auto showAll = [this] {
        for (ChannelRow* row : rows_)
            row->showChoice();
    };
    connect(&channels_, &DocumentChannels::changed, this, showAll);
    connect(&player_, &Player::activeChanged, this, showAll);
    connect(&pictures_, &QTimer::timeout, this, [this] {
        for (ChannelRow* row : rows_)
            if (row->isVisible())
                row->showPicture();
    });
    pictures_.start(pictureInterval);
    picture_.setAcceptDrops(true);
    for (QWidget* taking : {&picture_, static_cast<QWidget*>(&window)})
        taking->installEventFilter(this);
}

// Of the picture, and of the window around it, which gets the drops that no other part takes.
bool ChannelActions::eventFilter(QObject* watched, QEvent* event) {
    const bool isDrag = event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove;
    if (!isDrag && event->type() != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    auto* drop = static_cast<QDropEvent*>(event); // also the base of the other two
    QStringList files = sourcesOf(*drop->mimeData());
    if (isDrag)
        dragged_ = files;
    else if (files.isEmpty()) // Qt cannot always read the data at the drop
        files = std::exchange(dragged_, {});
    if (files.isEmpty() || player_.active() == nullptr)
        return QObject::eventFilter(watched, event);
    drop->acceptProposedAction();
    if (!isDrag)
        take(files, static_cast<QWidget*>(watched)->mapToGlobal(drop->position().toPoint()));
    return true;
}

void ChannelActions::take(const QStringList& files, const QPoint& place) {
    for (const QString& file : files) {
        OpenDocument& document = *player_.active();
        const ChannelChoices choices = channels_.choices(document);
        const auto black =
            std::ranges::find(choices, ChannelChoice::Kind::none, &ChannelChoice::kind);
        if (black == choices.end())
            return askForChannel(file, place);
        channels_.choose(document, static_cast<std::size_t>(black - choices.begin()),
                         choiceOf(file.toStdString()));
    }
}

void ChannelActions::askForChannel(const QString& file, const QPoint& place) {
    auto* menu = new QMenu(&picture_);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (std::size_t channel = 0; channel < channelCount; ++channel)
        menu->addAction(tr("Replace channel %1").arg(channel), this, [this, channel, file] {
            if (OpenDocument* document = player_.active())
                channels_.choose(*document, channel, choiceOf(file.toStdString()));
        });
    menu->popup(place);
}

} // namespace tarnwick::player
