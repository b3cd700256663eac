// Saves the active document as a screen saver.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"
#include "player/Exports/EpisodeOrders.h"

#include <QMainWindow>
#include <filesystem>
#include <functional>

namespace tarnwick::player {

class SaverActions : public QObject {
    Q_OBJECT

  public:
    using CopyOf = std::function<EpisodeCopy(const OpenDocument&)>; // with inputs

    SaverActions(Player& player, QMainWindow& window, Actions& actions, CopyOf copyOf);

  private:
    void save();
    void showSaved(const std::filesystem::path& bundle);

    Player& player_;
    QMainWindow& window_;
    CopyOf copyOf_;
};

} // namespace tarnwick::player
