// The user's choices that outlast the player: layout, theme, volume, folders.
#pragma once

#include <QString>
#include <QVariant>
#include <memory>

namespace tarnwick::player {

// The file player.ini of the user's configuration (XDG_CONFIG_HOME; default: ~/.config). It is read
// once and written in the background, so that no window waits for a file system. On one thread.
class UserSettings {
  public:
    // Reads the file, for at most two seconds: then there are no values.
    UserSettings();
    // Waits for the values that are not written yet, at most a second.
    ~UserSettings();
    UserSettings(const UserSettings&) = delete;
    UserSettings& operator=(const UserSettings&) = delete;

    // The value as it was read or set. `byDefault` without one.
    QVariant value(const QString& key, const QVariant& byDefault = {}) const;
    // Only this value of the file is replaced: other players write theirs.
    void set(const QString& key, const QVariant& value);

  private:
    struct Shared;

    std::shared_ptr<Shared> shared_; // shared with the work in the background
};

} // namespace tarnwick::player
