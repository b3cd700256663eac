#include "player/Performances/PerformanceFeature.h"

#include "player/Performances/PerformancesPanel.h"

#include <QAction>
#include <QLabel>
#include <QStatusBar>
#include <utility>

namespace tarnwick::player {

PerformanceFeature::PerformanceFeature(Player& player, QMainWindow& window, Actions& actions,
                                       DocumentInputsOf inputsOf)
    : QObject(&window), performer_(player, std::move(inputsOf)),
      panel_(new PerformancesPanel(player, performer_)) {
    actions.separate(ActionMenu::play);
    record_ = actions.add(ActionMenu::play, tr("Re&cord performance"), QKeySequence(tr("Ctrl+R")),
                          [this] {
                              if (performer_.isRecording())
                                  performer_.stopRecording();
                              else
                                  performer_.record();
                          });
    replay_ = actions.add(ActionMenu::play, tr("Repla&y last performance"),
                          QKeySequence(tr("Ctrl+Shift+R")), [this] {
                              if (performer_.isReplaying())
                                  performer_.stopReplay();
                              else
                                  performer_.replayLast();
                          });
    state_ = new QLabel;
    state_->setAccessibleName(tr("Performance"));
    window.statusBar()->addPermanentWidget(state_);
    connect(panel_, &PerformancesPanel::exportWanted, this, &PerformanceFeature::exportWanted);
    connect(&performer_, &Performer::changed, this, &PerformanceFeature::showState);
    connect(&performer_, &Performer::moved, this, &PerformanceFeature::showSeconds);
}

QWidget* PerformanceFeature::panel() const {
    return panel_;
}

void PerformanceFeature::showState() {
    record_->setText(performer_.isRecording() ? tr("Stop re&cording") : tr("Re&cord performance"));
    replay_->setText(performer_.isReplaying() ? tr("Stop repla&y")
                                              : tr("Repla&y last performance"));
    showSeconds();
}

void PerformanceFeature::showSeconds() {
    const QString seconds = QString::number(performer_.seconds(), 'f', 1);
    state_->setText(performer_.isRecording()   ? tr("\u25cf Recording %1 s").arg(seconds)
                    : performer_.isReplaying() ? tr("\u25b6 Replaying %1 s").arg(seconds)
                                               : QString());
}

} // namespace tarnwick::player
