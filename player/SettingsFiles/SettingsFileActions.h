// Loads and saves settings, values and keys by the menu.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"
#include "player/Model/SettingsFile.h"

class QMainWindow;

namespace tarnwick::player {

// Each change can be undone.
class SettingsFileActions : public QObject {
    Q_OBJECT

  public:
    SettingsFileActions(Player& player, QMainWindow& window, Actions& actions);

    // Loads a file into the active episode, or says why not.
    void load(const QString& file, SettingsPart part);

  private:
    void loadByDialog(SettingsPart part);
    void saveByDialog(SettingsPart part);
    void changeName();

    Player& player_;
    QMainWindow& window_;
};

} // namespace tarnwick::player
