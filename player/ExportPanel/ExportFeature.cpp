#include "player/ExportPanel/ExportFeature.h"

#include "player/ExportPanel/DocumentCopy.h"
#include "player/ExportPanel/ExportDialog.h"
#include "player/ExportPanel/PackageDialog.h"
#include "player/ExportPanel/QueuePanel.h"
#include "player/ExportPanel/SaverActions.h"
#include "player/ExportPanel/SnapshotActions.h"
#include "player/ExportPanel/VariationsDialog.h"
#include "player/ExportPanel/WalkthroughDialog.h"

#include <QCoreApplication>
#include <QDockWidget>
#include <QEvent>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

namespace tarnwick::player {

ExportFeature::ExportFeature(Player& player, QMainWindow& window, Actions& actions,
                             InputsOf inputsOf)
    : QObject(&window), player_(player), window_(window), folders_(player.userSettings()),
      panel_(new QueuePanel(queue_)), inputsOf_(std::move(inputsOf)) {
    actions.separate(ActionMenu::file);
    new SnapshotActions(player_, window_, actions, queue_,
                        [this](const OpenDocument& document) { return fullCopyOf(document); });
    actions.add(ActionMenu::file, tr("&Export movie..."), QKeySequence(tr("Ctrl+Shift+E")),
                [this] { exportMovie(); });
    actions.add(ActionMenu::file, tr("Export &walkthrough..."), {},
                [this] { exportWalkthrough(); });
    actions.add(ActionMenu::file, tr("Save as Swift&UI package..."), {},
                [this] { exportPackage(); });
    new SaverActions(player_, window_, actions,
                     [this](const OpenDocument& document) { return fullCopyOf(document); });
    connect(&queue_, &ExportQueue::ended, this, &ExportFeature::tellEnd);
    window_.installEventFilter(this);
}

QWidget* ExportFeature::panel() const {
    return panel_;
}

void ExportFeature::exportMovie(const std::filesystem::path& performance) {
    const OpenDocument* document = player_.active();
    if (document == nullptr)
        return;
    ExportDialog dialog(folders_, *document, fullCopyOf(*document), &window_);
    dialog.setPerformance(performance);
    if (dialog.exec() == QDialog::Accepted)
        add(movieOrder(dialog.request()));
}

void ExportFeature::exportVariations(const ShownVariations& shown) {
    const OpenDocument* document = player_.active();
    if (document == nullptr)
        return;
    const Episode& episode = *document->document().episode();
    VariationsDialog dialog(folders_, fullCopyOf(*document), shown, episode.shader.hasSound,
                            episode.meta.variationLength, &window_);
    if (dialog.exec() == QDialog::Accepted)
        add(dialog.order());
}

EpisodeCopy ExportFeature::fullCopyOf(const OpenDocument& document) const {
    EpisodeCopy copy = copyOf(document);
    copy.inputs = inputsOf_(document);
    return copy;
}

void ExportFeature::add(const Order& order) {
    queue_.add(order);
    showPanel();
}

void ExportFeature::exportWalkthrough() {
    const OpenDocument* document = player_.active();
    if (document == nullptr)
        return;
    const auto& file = document->document().file();
    WalkthroughDialog dialog(
        folders_, fullCopyOf(*document), document->document().episode()->shader.hasSound,
        file ? QString::fromStdString(file->parent_path().string()) : QString(), &window_);
    if (dialog.exec() != QDialog::Accepted)
        return;
    add(walkthroughOrder(dialog.request()));
}

void ExportFeature::exportPackage() {
    const OpenDocument* document = player_.active();
    if (document == nullptr)
        return;
    const Episode& episode = *document->document().episode();
    const EpisodeCopy copy = copyOf(*document);
    const bool hasTitle = episode.meta.title != EpisodeMeta{}.title;
    PackageDialog dialog(folders_, copy,
                         QString::fromStdString(hasTitle ? episode.meta.title : copy.title),
                         &window_);
    if (dialog.exec() != QDialog::Accepted)
        return;
    add(packageOrder(dialog.request()));
}

void ExportFeature::showPanel() {
    if (auto* dock = qobject_cast<QDockWidget*>(panel_->parentWidget())) {
        dock->show();
        dock->raise();
    }
}

void ExportFeature::tellEnd(int id) {
    const ExportJob& job = queue_.jobs().at(id);
    if (job.state == ExportState::failed)
        player_.tell(
            tr("The export of %1 failed: %2")
                .arg(QString::fromStdString(job.title), QString::fromStdString(job.sentence)));
}

bool ExportFeature::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &window_ && event->type() == QEvent::Close && !mayQuit()) {
        event->ignore();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

bool ExportFeature::mayQuit() {
    const int count = queue_.unfinished();
    if (count == 0)
        return true;
    QMessageBox question(QMessageBox::Question, tr("Exports are not finished"),
                         count == 1
                             ? tr("An export is not finished. Quit and cancel it?")
                             : tr("%1 exports are not finished. Quit and cancel them?").arg(count),
                         QMessageBox::NoButton, &window_);
    const QPushButton* quit =
        question.addButton(tr("&Cancel exports and quit"), QMessageBox::DestructiveRole);
    QPushButton* stay = question.addButton(tr("&Keep working"), QMessageBox::RejectRole);
    question.setDefaultButton(stay);
    question.setEscapeButton(stay);
    question.exec();
    return question.clickedButton() == quit;
}

} // namespace tarnwick::player
