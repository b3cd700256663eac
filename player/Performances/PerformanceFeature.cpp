#include "player/Performances/PerformanceFeature.h"

#include "player/Performances/PerformancesPanel.h"

#include <QAction>

namespace tarnwick::player {

PerformanceFeature::PerformanceFeature(Player& player, QMainWindow& window, Actions& actions)
    : QObject(&window), performer_(player), panel_(new PerformancesPanel(player, performer_)) {
    actions.separate(ActionMenu::play);
    record_ = actions.add(ActionMenu::play, tr("&Record performance"), QKeySequence(tr("Ctrl+R")),
                          [this] {
                              if (performer_.isRecording())
                                  performer_.stopRecording();
                              else
                                  performer_.record();
                          });
    replay_ = actions.add(ActionMenu::play, tr("Re&play last performance"),
                          QKeySequence(tr("Ctrl+Shift+R")), [this] {
                              if (performer_.isReplaying())
                                  performer_.stopReplay();
                              else
                                  performer_.replayLast();
                          });
    connect(&performer_, &Performer::changed, this, &PerformanceFeature::showState);
}

QWidget* PerformanceFeature::panel() const {
    return panel_;
}

void PerformanceFeature::showState() {
    record_->setText(performer_.isRecording() ? tr("Stop &recording") : tr("&Record performance"));
    replay_->setText(performer_.isReplaying() ? tr("Stop re&play")
                                              : tr("Re&play last performance"));
}

} // namespace tarnwick::player
