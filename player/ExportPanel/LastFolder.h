// The folders that the user chose last, one for each kind of file.
#pragma once

#include <QString>

namespace tarnwick::player {

// In the user's configuration; default: the user's folder for `kind`.
enum class FolderKind { movies, pictures, packages, performances };
QString lastFolder(FolderKind kind);
bool hasLastFolder(FolderKind kind); // whether the user chose one
void keepLastFolder(FolderKind kind, const QString& folder);

} // namespace tarnwick::player
