// Keeps the window's size, docks and theme between two starts.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/UserSettings.h"

#include <QByteArray>
#include <QMainWindow>
#include <QPalette>
#include <functional>

namespace tarnwick::player {

// In the user's settings; a value that is damaged is ignored.
class WindowLayout : public QObject {
    Q_OBJECT

  public:
    // The window has all its docks. `state` gives QMainWindow::saveState() as it is to be kept.
    WindowLayout(UserSettings& kept, QMainWindow& window, Actions& actions,
                 std::function<QByteArray()> state);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void addThemes(Actions& actions);
    void setTheme(const QString& theme);
    void restore();
    void keep();

    UserSettings& kept_;
    QMainWindow& window_;
    std::function<QByteArray()> state_;
    QByteArray initial_; // the state without a kept one
    QString desktopStyle_;
    QPalette desktopPalette_;
};

} // namespace tarnwick::player
