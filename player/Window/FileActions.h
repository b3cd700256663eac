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

    // Opens files in this order, or says why not. `then` is called after the last one.
    void open(const QStringList& files, std::function<void()> then = {});
    void openByDialog();
    void newEpisode();
    // Saves in the background and says why not. `then` gets whether it was saved. False if nothing
    // is begun: the author chose no file.
    using Then = std::function<void(bool isSaved)>;
    bool save(OpenDocument* document, Then then = {});

  private:
    void saveOver(OpenDocument* document, OtherText otherText, const Then& then);
    bool saveAs(OpenDocument* document, Then then = {});
    void finish(const DocumentSaved& saved, const Then& then);
    void watch(OpenDocument* document);

    Player& player_;
    QMainWindow& window_;
    OutsideChanges* outside_ = nullptr;
};

} // namespace tarnwick::player
