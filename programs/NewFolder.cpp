#include "programs/NewFolder.h"

#include "TarnwickBase/WholeFile.h"
#include "programs/CommandError.h"
#include "programs/HeldSignals.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// A folder of our own beside the place of another, gone with all that is left in it at the end.
class Beside {
  public:
    Beside(const fs::path& place, const fs::path& shown) {
        std::string name = (place.parent_path() / ".tarnwick-XXXXXX").string();
        if (!mkdtemp(name.data()))
            failure(shown.string() + " cannot be written: " + std::strerror(errno) + ".");
        folder_ = name;
    }
    ~Beside() {
        std::error_code unheard;
        fs::remove_all(folder_, unheard);
    }
    Beside(const Beside&) = delete;
    Beside& operator=(const Beside&) = delete;
    const fs::path& folder() const { return folder_; }

  private:
    fs::path folder_;
};

// The place itself, with links followed and without a slash at its end.
fs::path placeOf(const fs::path& folder) {
    fs::path place = fs::weakly_canonical(fs::absolute(folder));
    if (!place.has_filename())
        place = place.parent_path();
    if (!fs::exists(place))
        return place;
    if (!fs::is_directory(place))
        misuse(folder.string() + " is there already and is no folder.");
    if (!fs::is_empty(place))
        misuse(folder.string() + " is there already with something in it and stays as it is.");
    if (fs::equivalent(place, fs::current_path()))
        misuse(folder.string() + " is the current folder; a new one is wanted.");
    return place;
}

// `shown` is what to call `folder` by, which nobody will find under its own name.
void writeInto(const fs::path& folder, const fs::path& shown, std::span<const NewFile> files) {
    for (const NewFile& file : files) {
        fs::create_directories((folder / file.path).parent_path());
        try {
            writeWholeFile(folder / file.path, file.text);
        } catch (const WholeFileError& error) {
            const std::string_view sentence = error.what();
            failure(shown.string() + std::string(sentence.substr(folder.string().size())));
        }
    }
}

} // namespace

void writeNewFolder(const fs::path& folder, std::span<const NewFile> files) {
    const HeldSignals whileWriting;
    try {
        const fs::path place = placeOf(folder);
        const Beside beside(place, folder);
        // One more folder inside, since the outer one is for nobody else's eyes.
        const fs::path written = beside.folder() / place.filename();
        writeInto(written, folder, files);
        fs::rename(written, place);
    } catch (const fs::filesystem_error& error) {
        failure(folder.string() + " cannot be written: " + error.code().message() + ".");
    }
}

} // namespace tarnwick
