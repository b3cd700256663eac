#include "player/ChannelsPanel/ChannelRow.h"

#include "TarnwickPlatform/Cameras/Cameras.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QToolButton>
#include <thread>

namespace tarnwick::player {
namespace {

constexpr QSize pictureSize{80, 45};

QString nameOf(const ChannelChoice& choice, const OpenDocument* episode) {
    const QString name = QString::fromStdString(choice.place.filename().string());
    switch (choice.kind) {
    case ChannelChoice::Kind::none:
        return ChannelRow::tr("Black");
    case ChannelChoice::Kind::file:
        return name;
    case ChannelChoice::Kind::camera:
        return ChannelRow::tr("Camera %1").arg(QString::fromStdString(choice.place.string()));
    case ChannelChoice::Kind::episode:
        if (episode != nullptr)
            return ChannelRow::tr("Episode %1")
                .arg(QString::fromStdString(episode->document().title()));
        return ChannelRow::tr("Episode %1, which is not open").arg(name);
    }
    return {};
}

QToolButton* button(const QString& text, const QString& accessibleName) {
    auto* made = new QToolButton;
    made->setText(text);
    made->setAccessibleName(accessibleName);
    made->setFocusPolicy(Qt::StrongFocus);
    return made;
}

} // namespace

ChannelRow::ChannelRow(Player& player, DocumentChannels& channels, std::size_t channel,
                       DroppedFiles& dropped)
    : player_(player), channels_(channels), channel_(channel) {
    dropped.add(*this,
                {.taken = [](const DraggedPlaces& dragged) { return dragged.files; },
                 .take = [this](const QStringList& files,
                                const QPoint&) { choose(choiceOf(files.front().toStdString())); }});
    setAccessibleName(tr("Channel %1").arg(channel));
    picture_ = new QLabel;
    picture_->setFixedSize(pictureSize);
    picture_->setAlignment(Qt::AlignCenter);
    picture_->setFrameShape(QFrame::StyledPanel);
    picture_->setAccessibleName(tr("Picture of channel %1").arg(channel));
    name_ = new QLabel;
    name_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    name_->setTextFormat(Qt::PlainText);
    choose_ = button(tr("Choose"), tr("Choose the source of channel %1").arg(channel));
    menu_ = new QMenu(this);
    choose_->setMenu(menu_);
    choose_->setPopupMode(QToolButton::InstantPopup);
    clear_ = button(tr("Clear"), tr("Clear channel %1").arg(channel));
    connect(menu_, &QMenu::aboutToShow, this, &ChannelRow::fillMenu);
    connect(clear_, &QToolButton::clicked, this, &ChannelRow::clear);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(4, 2, 4, 2);
    row->addWidget(new QLabel(QString::number(channel)));
    row->addWidget(picture_);
    row->addWidget(name_, 1);
    row->addWidget(choose_);
    row->addWidget(clear_);
    showChoice();
}

void ChannelRow::choose(const ChannelChoice& choice) {
    if (OpenDocument* document = player_.active())
        channels_.choose(*document, channel_, choice);
}

void ChannelRow::chooseFile() {
    const QString file =
        QFileDialog::getOpenFileName(this, tr("Source of channel %1").arg(channel_), QString(),
                                     tr("Pictures, movies and episodes (*)"));
    if (!file.isEmpty())
        choose(choiceOf(file.toStdString()));
}

void ChannelRow::clear() {
    choose({});
}

void ChannelRow::fillMenu() {
    menu_->clear();
    menu_->addAction(tr("&File..."), this, &ChannelRow::chooseFile);
    addEpisodes(menu_->addMenu(tr("&Episode")));
    addCameras(menu_->addMenu(tr("&Camera")));
}

void ChannelRow::addEpisodes(QMenu* menu) {
    for (const auto& document : player_.documents())
        menu->addAction(QString::fromStdString(document->document().title()), this,
                        [this, id = document->id(), file = document->document().file()] {
                            choose({.kind = ChannelChoice::Kind::episode,
                                    .place = file.value_or(std::filesystem::path()),
                                    .document = id});
                        });
}

// Cameras may take long to answer.
void ChannelRow::addCameras(QMenu* menu) {
    QAction* looking = menu->addAction(tr("Looking for cameras"));
    looking->setEnabled(false);
    const auto show = [row = QPointer<ChannelRow>(this), menu = QPointer<QMenu>(menu),
                       looking = QPointer<QAction>(looking)](const std::vector<Camera>& cameras) {
        if (!row || !menu || !looking)
            return;
        looking->setText(tr("There is no camera"));
        looking->setVisible(cameras.empty());
        for (const Camera& camera : cameras)
            menu->addAction(QString::fromStdString(camera.name), row,
                            [row, device = camera.device] { row->choose(choiceOf(device)); });
    };
    std::thread([show] {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [show, cameras = allCameras()] { show(cameras); },
            Qt::QueuedConnection);
    }).detach();
}

void ChannelRow::showChoice() {
    const OpenDocument* document = player_.active();
    const ChannelChoice choice =
        document != nullptr ? channels_.choices(*document).at(channel_) : ChannelChoice{};
    const QString name = nameOf(choice, channels_.documentOf(choice));
    name_->setText(name);
    name_->setToolTip(choice.place.empty() ? name : QString::fromStdString(choice.place.string()));
    setAccessibleDescription(name);
    setEnabled(document != nullptr);
    clear_->setEnabled(choice.kind != ChannelChoice::Kind::none);
    shown_ = 0;
    picture_->clear();
    showPicture();
}

void ChannelRow::showPicture() {
    const OpenDocument* document = player_.active();
    const auto source = document != nullptr ? channels_.source(*document, channel_) : nullptr;
    if (!source || source->number() == shown_)
        return;
    const FrameSource::Frame frame = source->newest();
    shown_ = frame.number;
    const Picture& picture = *frame.picture;
    const QImage borrowed(picture.bytes.data(), static_cast<int>(picture.width),
                          static_cast<int>(picture.height),
                          static_cast<qsizetype>(picture.bytesPerRow), QImage::Format_RGB32);
    picture_->setPixmap(QPixmap::fromImage(
        borrowed.scaled(pictureSize - QSize(4, 4), Qt::KeepAspectRatio, Qt::FastTransformation)));
}

void ChannelRow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)
        clear();
    else
        QWidget::keyPressEvent(event);
}

} // namespace tarnwick::player
