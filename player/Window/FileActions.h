// New, open, save, close.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"

#include <QMainWindow>
#include <functional>

namespace tarnwick::player {

class OutsideChanges;

class FileActions : public QObject {
    Q_OBJECT

  public:
    FileActions(Player& player, QMainWindow& window, Actions& actions);

    // Opens a file, or says why not.
    void open(const QString& file);
    void openByDialog();
    void newEpisode();
    // Asks about unsaved changes. Nothing is closed if the answer is to cancel.
    void close(OpenDocument* document);
    // Asks about the unsaved changes of all documents. Whether the window may be closed.
    bool mayCloseAll();

  private:
    bool save(OpenDocument* document);
    bool saveAs(OpenDocument* document);
    bool written(const std::function<void()>& write); // or the user is told why not
    bool mayClose(OpenDocument* document);
    void watch(OpenDocument* document);

    Player& player_;
    QMainWindow& window_;
    OutsideChanges* outside_ = nullptr;
};

} // namespace tarnwick::player
