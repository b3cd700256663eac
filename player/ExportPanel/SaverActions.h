// Saves the active document as a screen saver, and installs it if that is wanted.
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
    struct Made;

    void save();
    static Made made(const EpisodeCopy& episode, const std::string& name,
                     const std::filesystem::path& folder);
    static Made installed(const EpisodeCopy& episode, const std::string& name);
    void show(const Made& saver);

    Player& player_;
    QMainWindow& window_;
    CopyOf copyOf_;
};

} // namespace tarnwick::player
