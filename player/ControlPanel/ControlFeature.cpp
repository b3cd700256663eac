#include "player/ControlPanel/ControlFeature.h"

#include "player/ControlPanel/BindingsView.h"
#include "player/ControlPanel/ConnectionsView.h"
#include "player/ControlPanel/MonitorView.h"
#include "player/Panels/ParametersPanel.h"

#include <QAction>
#include <QDockWidget>
#include <QMenu>
#include <QTabWidget>
#include <QTimer>
#include <utility>

namespace tarnwick::player {

ControlFeature::ControlFeature(Player& player, QMainWindow& window, Actions& actions)
    : QObject(&window), window_(window), control_(new LiveControl(player, controlFile(), &window)) {
    makeDock(player);
    addActions(player, actions);
    QTimer::singleShot(0, this, [this] { // after the window has made its panels
        if (auto* parameters = window_.findChild<ParametersPanel*>())
            connect(parameters, &ParametersPanel::menuWanted, this,
                    [this](const QString& name, QMenu* menu) {
                        addToMenu(ParameterTarget{name.toStdString()}, menu);
                    });
    });
}

void ControlFeature::makeDock(Player& player) {
    pages_ = new QTabWidget;
    pages_->setDocumentMode(true);
    bindings_ = new BindingsView(player, *control_);
    connections_ = new ConnectionsView(*control_);
    monitor_ = new MonitorView(*control_);
    pages_->addTab(bindings_, tr("Bindings"));
    pages_->addTab(connections_, tr("OSC and MIDI"));
    pages_->addTab(monitor_, tr("Monitor"));
    dock_ = new QDockWidget(tr("Live control"), &window_);
    dock_->setObjectName(QStringLiteral("liveControl"));
    dock_->setWidget(pages_);
    window_.addDockWidget(Qt::BottomDockWidgetArea, dock_);
    dock_->hide();
    connect(dock_, &QDockWidget::visibilityChanged, control_, [this](bool isVisible) {
        if (isVisible)
            control_->startMIDI();
    });
}

void ControlFeature::addActions(Player& player, Actions& actions) {
    actions.add(ActionMenu::live, tr("&Bindings"), QKeySequence(tr("Ctrl+Alt+B")),
                [this] { open(bindings_); });
    actions.add(ActionMenu::live, tr("&OSC and MIDI"), {}, [this] { open(connections_); });
    actions.add(ActionMenu::live, tr("&Monitor"), {}, [this] { open(monitor_); });
    actions.add(ActionMenu::live, tr("&Learn a control"), QKeySequence(tr("Ctrl+Alt+M")), [this] {
        open(bindings_);
        bindings_->toggleLearning();
    });
    QAction* listens = actions.add(ActionMenu::live, tr("L&isten to OSC"), {}, [] {});
    listens->setCheckable(true);
    connect(listens, &QAction::toggled, control_, [this](bool isOn) {
        OSCInput input = control_->input();
        input.isOn = isOn;
        control_->setInput(input);
    });
    connect(control_, &LiveControl::changed, listens, [this, listens] {
        const QSignalBlocker block(listens);
        listens->setChecked(control_->input().isOn);
    });
    QAction* writes = actions.add(ActionMenu::live, tr("&Write keys from controls"), {}, [] {});
    writes->setCheckable(true);
    connect(writes, &QAction::toggled, control_, &LiveControl::setWritesKeys);
    release_ = actions.add(ActionMenu::live, tr("&Release held values"),
                           QKeySequence(tr("Ctrl+Alt+R")), [&player] {
                               if (OpenDocument* document = player.active())
                                   document->releaseHeld();
                           });
    release_->setEnabled(false);
    connect(&player, &Player::activeChanged, this, [this, &player] { showHeld(player); });
    connect(&player, &Player::documentAdded, this, [this, &player](OpenDocument* document) {
        connect(document, &OpenDocument::settingsChanged, this,
                [this, &player] { showHeld(player); });
    });
}

void ControlFeature::showHeld(const Player& player) {
    release_->setEnabled(player.active() != nullptr && !player.active()->held().empty());
}

void ControlFeature::addToMenu(const ControlTarget& target, QMenu* menu) {
    menu->addAction(tr("&Learn a control"), this, [this, target] {
        open(bindings_);
        bindings_->learn(target);
    });
    for (const Binding& binding : control_->bindings())
        if (binding.target == target)
            menu->addAction(tr("Remove %1").arg(QString::fromStdString(labelOf(binding.source))),
                            this, [this, binding] {
                                std::vector<Binding> bindings = control_->bindings();
                                std::erase(bindings, binding);
                                control_->setBindings(std::move(bindings));
                            });
}

void ControlFeature::open(QWidget* page) {
    auto* beside = window_.findChild<QDockWidget*>(QStringLiteral("problems"));
    if (beside != nullptr && dock_->isHidden() && !dock_->isFloating())
        window_.tabifyDockWidget(beside, dock_);
    dock_->show();
    dock_->raise();
    pages_->setCurrentWidget(page);
    page->setFocus();
}

} // namespace tarnwick::player
