#include "player/ChannelsPanel/ChannelActions.h"

#include "player/ChannelsPanel/ChannelRow.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QVBoxLayout>
#include <algorithm>

namespace tarnwick::player {
namespace {

constexpr int pictureInterval = 250; // milliseconds

// The dragged files that are sources: all but episodes.
QStringList sourcesOf(const DraggedPlaces& dragged) {
    QStringList files;
    for (const QString& file : dragged.files)
        if (choiceOf(file.toStdString()).kind == ChannelChoice::Kind::file)
            files.append(file);
    return files;
}

} // namespace

ChannelActions::ChannelActions(Player& player, QMainWindow& window, Actions& actions,
                               QWidget& picture, DroppedFiles& dropped)
    : QObject(&window), player_(player), picture_(picture), channels_(player, nullptr) {
    panel_ = new QWidget;
    panel_->setAccessibleName(tr("Channels"));
    auto* column = new QVBoxLayout(panel_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        rows_[channel] = new ChannelRow(player_, channels_, channel, dropped);
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
    // The window around the picture gets the drops that no other part takes.
    for (QWidget* part : {&picture_, static_cast<QWidget*>(&window)})
        dropped.add(*part, {.taken =
                                [this](const DraggedPlaces& dragged) {
                                    return player_.active() != nullptr ? sourcesOf(dragged)
                                                                       : QStringList();
                                },
                            .take = [this](const QStringList& files,
                                           const QPoint& point) { take(files, point); }});
}

void ChannelActions::take(const QStringList& files, const QPoint& point) {
    for (const QString& file : files) {
        OpenDocument& document = *player_.active();
        const ChannelChoices choices = channels_.choices(document);
        const auto black =
            std::ranges::find(choices, ChannelChoice::Kind::none, &ChannelChoice::kind);
        if (black == choices.end())
            return askForChannel(file, point);
        channels_.choose(document, static_cast<std::size_t>(black - choices.begin()),
                         choiceOf(file.toStdString()));
    }
}

void ChannelActions::askForChannel(const QString& file, const QPoint& point) {
    auto* menu = new QMenu(&picture_);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (std::size_t channel = 0; channel < channelCount; ++channel)
        menu->addAction(tr("Replace channel %1").arg(channel), this, [this, channel, file] {
            if (OpenDocument* document = player_.active())
                channels_.choose(*document, channel, choiceOf(file.toStdString()));
        });
    menu->popup(point);
}

} // namespace tarnwick::player
