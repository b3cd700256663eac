// Exports: the actions that begin them, the queue, and the question at the end.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"
#include "player/ExportPanel/LastFolders.h"
#include "player/Exports/EpisodeOrders.h"
#include "player/Exports/ExportQueue.h"
#include "player/Model/ShownVariations.h"

#include <QMainWindow>
#include <filesystem>
#include <functional>

namespace tarnwick::player {

class QueuePanel;
class SnapshotActions;

class ExportFeature : public QObject {
    Q_OBJECT

  public:
    // The inputs of a document, as they are now.
    using InputsOf = std::function<InputCopies(const OpenDocument&)>;

    ExportFeature(Player& player, QMainWindow& window, Actions& actions, InputsOf inputsOf);

    QWidget* panel() const; // the list of exports, for a dock
    ExportQueue& queue() { return queue_; }
    // Asks for the format first. `performance`: the proposed one; empty: none.
    void exportMovie(const std::filesystem::path& performance = {});
    void exportVariations(const ShownVariations& shown);
    // The document as it is now, with its inputs.
    EpisodeCopy fullCopyOf(const OpenDocument& document) const;
    // Adds the order to the list, and shows the list.
    void add(const Order& order);

  protected:
    // Asks whether the window may be closed while exports run, before other questions.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void exportWalkthrough();
    void exportPackage();
    void showPanel();
    void tellEnd(int id);
    bool mayQuit();

    Player& player_;
    QMainWindow& window_;
    LastFolders folders_;
    ExportQueue queue_;
    QueuePanel* panel_;
    InputsOf inputsOf_;
};

} // namespace tarnwick::player
