// Loads and saves settings, values and keys by the menu.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/FileWork.h"
#include "player/App/Player.h"
#include "player/Model/SettingsFile.h"

class QMainWindow;

namespace tarnwick::player {

// Each change can be undone.
class SettingsFileActions : public QObject {
    Q_OBJECT

  public:
    SettingsFileActions(Player& player, QMainWindow& window, Actions& actions);

    // Reads a file in the background and loads it into the episode that is active now, or says why
    // not.
    void load(const QString& file, SettingsPart part);

  private:
    void loadByDialog(SettingsPart part);
    void saveByDialog(SettingsPart part);
    void changeName();
    void take(OpenDocument& document, Settings next, const QString& file);

    Player& player_;
    QMainWindow& window_;
    FileWork fileWork_;
};

} // namespace tarnwick::player
