#include "player/Exports/SaverBundle.h"

#include "TarnwickBase/InstalledFiles.h"
#include "TarnwickBase/OutputFile.h"
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Bundle/BundleChannels.h"
#include "player/Exports/NewPlace.h"

#include <system_error>
#include <vector>

namespace tarnwick::player {
namespace {

namespace fs = std::filesystem;

std::vector<BundleChannel> bundled(const InputCopies& inputs) {
    std::vector<BundleChannel> channels;
    for (const ChannelCopy& channel : inputs.channels)
        channels.push_back({.address = channel.address,
                            .file = channel.file,
                            .text = channel.text,
                            .settings = settingsDocument(channel.settings, channel.settings.name)});
    return channels;
}

// In the temporary folder `beside`.
fs::path madeBundle(const EpisodeCopy& episode, const std::string& name, const fs::path& beside) {
    const fs::path text = beside / episode.fileName(), settings = beside / "settings.json";
    writeWholeFile(text, episode.text);
    writeWholeFile(settings, settingsDocument(episode.settings, name));
    const fs::path bundle = makeBundle(beside / "bundle", text, settings).folder();
    writeChannels(bundle, bundled(episode.inputs));
    return bundle;
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

InstallReport installEpisode(const EpisodeCopy& episode, const std::string& name,
                             const SaverPlaces& places) {
    const Episode installed = Episode::of(episode.text, episode.fileName());
    return installSaver({.episode = installed,
                         .settings = Settings::decode(settingsDocument(episode.settings, name)),
                         .program = installedFile(InstalledFile::saver),
                         .channels = bundled(episode.inputs)},
                        places);
}

fs::path saversFolder() {
    return saverPlaces().savers;
}

} // namespace tarnwick::player
