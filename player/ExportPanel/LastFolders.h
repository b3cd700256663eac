// The folders that the user chose last, one for each kind of file.
#pragma once

#include "player/App/UserSettings.h"

#include <QString>

namespace tarnwick::player {

enum class FolderKind { movies, pictures, packages, performances };

// In the user's settings. On their thread.
class LastFolders {
  public:
    explicit LastFolders(UserSettings& kept) : kept_(kept) {}

    // Default: the user's folder for `kind`.
    QString of(FolderKind kind) const;
    bool isChosen(FolderKind kind) const; // by the user
    void keep(FolderKind kind, const QString& folder);

  private:
    QString chosen(FolderKind kind) const;

    UserSettings& kept_;
};

} // namespace tarnwick::player
