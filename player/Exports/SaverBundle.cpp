#include "player/Exports/SaverBundle.h"

#include "TarnwickBase/OutputFile.h"
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Bundle/Bundle.h"
#include "player/Exports/NewPlace.h"
#include "saver/Installing/SaverPlaces.h"

#include <system_error>

namespace tarnwick::player {
namespace {

namespace fs = std::filesystem;

// In the temporary folder `beside`.
fs::path madeBundle(const EpisodeCopy& episode, const std::string& name, const fs::path& beside) {
    const fs::path text = beside / episode.fileName(), settings = beside / "settings.json";
    writeWholeFile(text, episode.text);
    writeWholeFile(settings, settingsDocument(episode.settings, name));
    return makeBundle(beside / "bundle", text, settings).folder();
}

} // namespace

fs::path makeSaver(const EpisodeCopy& episode, const std::string& name, const fs::path& folder) {
    try {
        fs::create_directories(folder.parent_path());
        const TemporaryFolder beside(folder.parent_path(), folder.filename().native());
        return movedToNewPlace(madeBundle(episode, name, beside.path()), folder);
    } catch (const TemporaryFolderError& error) {
        throw SaverBundleError(folder.string() + " cannot be written: " + error.reason + ".");
    } catch (const fs::filesystem_error& error) {
        throw SaverBundleError(folder.string() + " cannot be written: " + error.code().message() +
                               ".");
    } catch (const std::runtime_error& error) { // of bundles and files: whole sentences
        throw SaverBundleError(error.what());
    }
}

fs::path saversFolder() {
    return saverPlaces().savers;
}

} // namespace tarnwick::player
