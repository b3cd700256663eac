#include "programs/CommandLine/NewFolder.h"

#include "TarnwickBase/EndSignals.h"
#include "TarnwickBase/WholeFile.h"
#include "programs/CommandLine/CommandError.h"

#include <cerrno>
#include <cstring>
#include <string_view>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// The place itself, with links followed and without a slash at its end.
fs::path placeOf(const fs::path& folder) {
    if (folder == "-")
        misuse("A folder cannot go to standard output.");
    fs::path place = fs::weakly_canonical(fs::absolute(folder));
    if (!place.has_filename())
        place = place.parent_path();
    if (!fs::exists(place))
        return place;
    if (!fs::is_directory(place))
        misuse(folder.string() + " already exists and is not a folder.");
    if (!fs::is_empty(place))
        misuse(folder.string() + " already exists and is not empty.");
    if (fs::equivalent(place, fs::current_path()))
        misuse(folder.string() + " is the current folder; a new folder is required.");
    return place;
}

// `shown` names the folder in errors, because `folder` is temporary.
void writeInto(const fs::path& folder, const fs::path& shown, std::span<const NewFile> files) {
    for (const NewFile& file : files) {
        fs::create_directories((folder / file.path).parent_path());
        try {
            writeWholeFile(folder / file.path, file.text);
        } catch (const WholeFileError& error) {
            failure(WholeFileError(shown / file.path, error.reason).what());
        }
    }
}

// What `work` throws as a sentence about `folder`.
template <class Work> void reported(const fs::path& folder, const Work& work) {
    try {
        work();
    } catch (const fs::filesystem_error& error) {
        failure(folder.string() + " cannot be written: " + error.code().message() + ".");
    } catch (const TemporaryFolderError& error) {
        failure(folder.string() + " cannot be written: " + error.reason + ".");
    }
}

} // namespace

void checkNewFolder(const fs::path& folder) {
    reported(folder, [&] {
        const fs::path parent = placeOf(folder).parent_path();
        if (access(parent.c_str(), W_OK | X_OK) != 0)
            failure(folder.string() + " cannot be written: " + std::strerror(errno) + ".");
    });
}

void writeNewFolder(const fs::path& folder, std::span<const NewFile> files) {
    const HeldSignals whileWriting;
    reported(folder, [&] {
        const fs::path place = placeOf(folder);
        const TemporaryFolder beside(place.parent_path(), place.filename().native());
        // One more folder inside, since the outer one is for nobody else's eyes.
        const fs::path written = beside.path() / place.filename();
        writeInto(written, folder, files);
        fs::rename(written, place);
    });
}

} // namespace tarnwick
