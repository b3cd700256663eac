// Gives a finished file or folder its name without replacing another one.
#pragma once

#include <filesystem>
#include <stdexcept>

namespace tarnwick::player {

// what() is one sentence that names the file.
struct NewPlaceError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Moves `from` to `wanted`, on the same file system, or if something has that name, to the same
// name with " 2", " 3" and so on. Nothing is replaced, whatever other programs do meanwhile.
// Returns the place. Throws NewPlaceError. Blocks.
std::filesystem::path movedToNewPlace(const std::filesystem::path& from,
                                      const std::filesystem::path& wanted);

} // namespace tarnwick::player
