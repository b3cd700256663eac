#include "player/SoundPanel/SoundFeature.h"

#include "player/SoundPanel/SoundControls.h"
#include "player/SoundPanel/SoundPanel.h"
#include "player/SoundPanel/VolumeControl.h"

#include <QAction>
#include <QActionGroup>
#include <QDockWidget>
#include <QMainWindow>
#include <QMenu>
#include <QStatusBar>

namespace tarnwick::player {
namespace {

constexpr float volumeStep = 0.05f; // of a key

QString words(const char* text) {
    return QObject::tr(text);
}

void addVolumeActions(SoundControls& sound, Actions& actions) {
    const auto live = ActionMenu::live;
    QAction* mute = actions.add(live, words("M&ute"), QKeySequence(words("Ctrl+Shift+M")), [] {});
    mute->setCheckable(true);
    QObject::connect(mute, &QAction::triggered, &sound, &SoundControls::setMuted);
    const auto show = [&sound, mute] { mute->setChecked(sound.volume().isMuted); };
    QObject::connect(&sound, &SoundControls::volumeChanged, mute, show);
    show();
    actions.add(live, words("Loud&er"), QKeySequence(words("Ctrl+Shift+Up")),
                [&sound] { sound.addVolume(volumeStep); });
    actions.add(live, words("&Quieter"), QKeySequence(words("Ctrl+Shift+Down")),
                [&sound] { sound.addVolume(-volumeStep); });
}

void addInputActions(SoundControls& sound, Actions& actions) {
    using Kind = SoundInput::Kind;
    QMenu* inputs = actions.submenu(ActionMenu::live, words("Sound in&put"));
    auto* group = new QActionGroup(&sound);
    const auto add = [&](const QString& text, Kind kind, std::function<void()> run) {
        QAction* action = actions.add(inputs, text, std::move(run));
        action->setCheckable(true);
        group->addAction(action);
        const auto show = [&sound, action, kind] {
            action->setChecked(sound.input().kind == kind);
        };
        QObject::connect(&sound, &SoundControls::inputChanged, action, show);
        show();
    };
    add(words("&Own sound"), Kind::own, [&sound] { sound.setInput({}); });
    add(words("&Microphone"), Kind::microphone,
        [&sound] { sound.setInput({.kind = Kind::microphone}); });
    add(words("&Desktop's sound"), Kind::desktop,
        [&sound] { sound.setInput({.kind = Kind::desktop}); });
    add(words("Sound &file..."), Kind::file, [&sound] { sound.chooseFile(); });
}

} // namespace

void addSound(Player& player, QMainWindow& window, Actions& actions) {
    auto* sound = new SoundControls(player, window);
    actions.separate(ActionMenu::live);
    addVolumeActions(*sound, actions);
    addInputActions(*sound, actions);
    auto* dock = new QDockWidget(words("Sound"), &window);
    dock->setObjectName(QStringLiteral("sound"));
    dock->setWidget(new SoundPanel(*sound));
    window.addDockWidget(Qt::RightDockWidgetArea, dock);
    dock->hide();
    actions.add(ActionMenu::live, dock->toggleViewAction());
    window.statusBar()->addPermanentWidget(new VolumeControl(*sound));
}

} // namespace tarnwick::player
