// What the player does when another program saves or removes the file of an open episode.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"

#include <QMainWindow>
#include <QPointer>
#include <functional>
#include <map>
#include <optional>
#include <string>

namespace tarnwick::player {

class DifferenceDialog;

class OutsideChanges : public QObject {
    Q_OBJECT

  public:
    OutsideChanges(Player& player, QMainWindow& window, Actions& actions);

    // Shows the differences to the file's text; the author takes one of both. `afterKeeping` is
    // called if this document's text is kept.
    void ask(OpenDocument* document, EpisodeText file, std::function<void()> afterKeeping = {});

  private:
    void watch(OpenDocument* document);
    void readAndAsk(OpenDocument* document);
    void show(OpenDocument* document, std::string file);
    void compareWithFile();

    Player& player_;
    QMainWindow& window_;
    struct Asked {
        QPointer<DifferenceDialog> dialog;
        std::optional<FileWatcher::Stamp> stamp; // of the text that it shows
        std::function<void()> afterKeeping;
    };
    std::map<OpenDocument*, Asked> asked_;
};

} // namespace tarnwick::player
