#include "player/Window/MainWindow.h"

#include "player/App/Background.h"
#include "player/ChannelsPanel/ChannelActions.h"
#include "player/CommandList/CommandActions.h"
#include "player/ControlPanel/ControlFeature.h"
#include "player/Dropping/EpisodeDrops.h"
#include "player/Editor/EpisodeEditor.h"
#include "player/ExportPanel/ExportFeature.h"
#include "player/Grid/ThumbnailService.h"
#include "player/KeysPanel/KeysActions.h"
#include "player/KeysPanel/KeysPanel.h"
#include "player/Layout/WindowLayout.h"
#include "player/Panels/ParametersPanel.h"
#include "player/Panels/ProblemsPanel.h"
#include "player/Panels/TransportBar.h"
#include "player/Performances/PerformanceFeature.h"
#include "player/SettingsFiles/SettingsFileActions.h"
#include "player/Sharing/SharingFeature.h"
#include "player/SoundPanel/SoundControls.h"
#include "player/SoundPanel/SoundFeature.h"
#include "player/Start/StartActions.h"
#include "player/VariationsPanel/VariationsActions.h"
#include "player/VariationsPanel/VariationsPanel.h"
#include "player/Window/Closing.h"
#include "player/Window/DocumentTabs.h"
#include "player/Window/FileActions.h"
#include "player/Window/MessageBar.h"
#include "player/Window/PictureActions.h"
#include "player/Window/PictureView.h"
#include "player/Window/PlayActions.h"

#include <QAction>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QSplitter>
#include <QVBoxLayout>

namespace tarnwick::player {
namespace {

constexpr int mainTarget = 1;     // the number of the picture in this window
constexpr int heightOfKeys = 360; // pixels, while keys are edited

QVBoxLayout* column(QWidget* widget) {
    auto* made = new QVBoxLayout(widget);
    made->setContentsMargins(0, 0, 0, 0);
    made->setSpacing(0);
    return made;
}

// Within the display, with room for the frame that a window manager adds.
QSize firstSize() {
    constexpr QSize wanted(1360, 820), frame(16, 48);
    return wanted.boundedTo(QGuiApplication::primaryScreen()->availableSize() - frame);
}

// What movies and stills of a document read.
InputCopies inputsOf(const OpenDocument& document, const DocumentChannels& channels,
                     const SoundControls* sound) {
    InputCopies copies = channels.copies(document);
    copies.isHearing = document.document().episode()->shader.usesInputs;
    if (sound == nullptr || sound->input().kind == SoundInput::Kind::own)
        return copies;
    if (sound->input().kind == SoundInput::Kind::file) {
        copies.sound = sound->input().name;
        copies.playsSound = sound->volume().hasFile;
    } else if (copies.isHearing) {
        copies.remarks.emplace_back(
            "The sound input is silent in stills; a movie hears the episode's own sound.");
    }
    return copies;
}

bool isDevice(const SoundInput& input) {
    return input.kind == SoundInput::Kind::microphone || input.kind == SoundInput::Kind::desktop;
}

// The same inputs, as a performance records them.
DocumentInputs performedInputsOf(const OpenDocument& document, const DocumentChannels& channels,
                                 const SoundControls* sound) {
    const InputCopies copies = channels.copies(document);
    DocumentInputs inputs{.remarks = copies.remarks};
    for (const ChannelCopy& channel : copies.channels)
        if (channel.file.empty() && channel.document.empty())
            inputs.remarks.push_back("Channel " + channel.address +
                                     " shows an episode that has no file; it is black in movies.");
        else
            inputs.files[channel.address] = {
                .file = (channel.file.empty() ? channel.document : channel.file).string()};
    if (sound == nullptr)
        return inputs;
    if (sound->input().kind == SoundInput::Kind::file)
        inputs.files[soundInput] = {.file = sound->input().name,
                                    .isPlayed = sound->volume().hasFile};
    if (isDevice(sound->input()) && document.document().episode()->shader.usesInputs) {
        inputs.device = sound->levels();
        inputs.remarks.emplace_back(
            "The levels of the microphone or the desktop are recorded; their sound is not.");
    }
    return inputs;
}

} // namespace

MainWindow::MainWindow(Player& player) : player_(player), actions_(*this) {
    setWindowTitle(QStringLiteral("Tarnwick"));
    setDockNestingEnabled(true);
    auto* split = new QSplitter(Qt::Horizontal);
    split->addWidget(texts());
    split->addWidget(pictures());
    split->setStretchFactor(0, 1);
    split->setStretchFactor(1, 1);
    setCentralWidget(split);
    makeFeatures();
    makeDocks();
    resize(firstSize());
    split->setSizes({620, 740});
    new WindowLayout(player_.userSettings(), *this, actions_,
                     [this] { return start_->windowState(); });
}

QWidget* MainWindow::texts() {
    auto* left = new QWidget;
    tabs_ = new DocumentTabs(player_);
    messages_ = new MessageBar;
    auto* rows = column(left);
    rows->addWidget(tabs_, 1);
    rows->addWidget(messages_);
    connect(&player_, &Player::told, messages_, &MessageBar::tell);
    connect(tabs_, &DocumentTabs::titleChanged, this,
            [this](const QString& title, bool isModified) {
                // The platform adds the program's name behind it.
                setWindowTitle(title.isEmpty() ? QStringLiteral("Tarnwick")
                                               : title + QStringLiteral("[*]"));
                setWindowModified(isModified);
            });
    return left;
}

QWidget* MainWindow::pictures() {
    auto* right = new QWidget;
    picture_ = new PictureView(player_, mainTarget);
    transport_ = new TransportBar(player_);
    auto* rows = column(right);
    rows->addWidget(picture_, 1);
    rows->addWidget(transport_);
    return right;
}

void MainWindow::makeFeatures() {
    files_ = new FileActions(player_, *this, actions_);
    closing_ = new Closing(player_, *this, *files_);
    connect(tabs_, &DocumentTabs::closeWanted, closing_, &Closing::close);
    actions_.add(ActionMenu::file, tr("&Close"), QKeySequence(tr("Ctrl+W")), [this] {
        if (player_.active() != nullptr)
            closing_->close(player_.active());
    });
    addEditActions(player_, actions_, *tabs_);
    addPlayActions(actions_, *transport_);
    pictureActions_ = new PictureActions(player_, *this, actions_, *picture_);
    auto* dropped = new DroppedFiles(*this);
    channels_ = new ChannelActions(player_, *this, actions_, *picture_, *dropped);
    exports_ = new ExportFeature(player_, *this, actions_, [this](const OpenDocument& document) {
        return inputsOf(document, channels_->channels(), findChild<SoundControls*>());
    });
    sharing_ = new SharingFeature(player_, *this, actions_, [this](const OpenDocument& document) {
        return exports_->fullCopyOf(document);
    });
    thumbnails_ = new ThumbnailService(player_, this);
    start_ = new StartActions(player_, *this, actions_, *thumbnails_,
                              [this] { files_->openByDialog(); });
    settingsFiles_ = new SettingsFileActions(player_, *this, actions_);
    dropped->addForWindow(
        episodeDrops(LinkOpener::isLink, [this](const QString& place) { open({place}); }));
    performances_ =
        new PerformanceFeature(player_, *this, actions_, [this](const OpenDocument& document) {
            return performedInputsOf(document, channels_->channels(), findChild<SoundControls*>());
        });
    connect(&performances_->performer(), &Performer::soundReplayed, this,
            [this](const ReplayedSound& replayed) {
                if (auto* sound = findChild<SoundControls*>())
                    sound->setReplayed(replayed.performance, replayed.file, replayed.isPlayed);
            });
    connect(performances_, &PerformanceFeature::exportWanted, exports_,
            &ExportFeature::exportMovie);
    addCommandActions(*this, actions_);
    new ControlFeature(player_, *this, actions_);
    addSound(player_, *this, actions_);
    actions_.separate(ActionMenu::file);
    actions_.add(ActionMenu::file, tr("&Quit"), QKeySequence(tr("Ctrl+Q")), [this] { close(); });
}

void MainWindow::makeDocks() {
    actions_.separate(ActionMenu::view);
    auto* problems = new ProblemsPanel(player_);
    connect(problems, &ProblemsPanel::chosen, this, [this](int line, int place) {
        if (EpisodeEditor* shown = tabs_->editor())
            shown->goTo(line, place);
    });
    QDockWidget* parameters = addDock(new ParametersPanel(player_), tr("Parameters"), "parameters",
                                      Qt::RightDockWidgetArea);
    auto* variations = new VariationsPanel(player_, *thumbnails_);
    addVariationsActions(actions_, *variations);
    connect(variations, &VariationsPanel::exportWanted, this,
            [this, variations] { exports_->exportVariations(variations->shown()); });
    tabifyDockWidget(parameters,
                     addDock(variations, tr("Variations"), "variations", Qt::RightDockWidgetArea));
    parameters->raise();
    QDockWidget* list = addDock(problems, tr("Problems"), "problems", Qt::BottomDockWidgetArea);
    auto* keysPanel = new KeysPanel(player_);
    QDockWidget* keys = addDock(keysPanel, tr("Keys"), "keys", Qt::BottomDockWidgetArea);
    addKeysActions(actions_, *keysPanel, [this, keys] {
        keys->show();
        keys->raise();
        if (keys->height() < heightOfKeys && !keys->isFloating())
            resizeDocks({keys}, {heightOfKeys}, Qt::Vertical);
    });
    tabifyDockWidget(parameters, addDock(channels_->panel(), tr("Channels"), "channels",
                                         Qt::RightDockWidgetArea));
    parameters->raise();
    tabifyDockWidget(list, keys);
    tabifyDockWidget(
        list, addDock(exports_->panel(), tr("Exports"), "exports", Qt::BottomDockWidgetArea));
    tabifyDockWidget(list, addDock(performances_->panel(), tr("Performances"), "performances",
                                   Qt::BottomDockWidgetArea));
    list->raise();
    resizeDocks({list}, {190}, Qt::Vertical);
    resizeDocks({parameters}, {300}, Qt::Horizontal);
}

QDockWidget* MainWindow::addDock(QWidget* content, const QString& title, const char* name,
                                 Qt::DockWidgetArea area) {
    auto* dock = new QDockWidget(title, this);
    dock->setObjectName(QLatin1String(name));
    dock->setWidget(content);
    addDockWidget(area, dock);
    QAction* shown = actions_.add(ActionMenu::view, title, {}, [] {});
    shown->setCheckable(true);
    connect(dock->toggleViewAction(), &QAction::toggled, shown, &QAction::setChecked);
    // A panel behind a tab comes to the front. Qt's own action would close it.
    connect(shown, &QAction::triggered, dock, [dock, shown] {
        const bool isInFront = !dock->visibleRegion().isEmpty();
        dock->setVisible(!isInFront);
        dock->raise();
        shown->setChecked(!isInFront);
    });
    return dock;
}

void MainWindow::open(const QStringList& files, const std::function<void()>& then) {
    inBackground(
        this,
        [files] {
            QStringList folders;
            for (const QString& file : files)
                if (!LinkOpener::isLink(file) && QFileInfo(file).isDir())
                    folders << file;
            return folders;
        },
        [this, files, then](const QStringList& folders) { openSorted(files, folders, then); });
}

void MainWindow::openSorted(const QStringList& files, const QStringList& folders,
                            const std::function<void()>& then) {
    QStringList episodes;
    for (const QString& file : files)
        if (LinkOpener::isLink(file))
            sharing_->links().open(file);
        else if (folders.contains(file))
            start_->openFolder(file.toStdString());
        else if (file.endsWith(QStringLiteral(".json"), Qt::CaseInsensitive))
            settingsFiles_->load(file, SettingsPart::all);
        else
            episodes << file;
    files_->open(episodes, then);
}

void MainWindow::newEpisode() {
    files_->newEpisode();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!closing_->mayCloseWindow()) {
        event->ignore();
        return;
    }
    closing_->discardDrafts();
    pictureActions_->closeOutput();
    event->accept();
}

} // namespace tarnwick::player
