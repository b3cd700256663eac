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

// Copies, so that the saver has them wherever the files go (SaverChannels.h).
void writeChannels(const fs::path& folder, const InputCopies& inputs) {
    if (!inputs.channels.empty())
        fs::create_directories(folder);
    for (const ChannelCopy& channel : inputs.channels) {
        const std::string name = (folder / channel.address).string();
        if (!channel.file.empty()) {
            fs::copy_file(channel.file, name + channel.file.extension().string());
            continue;
        }
        writeWholeFile(name + ".metal", channel.text);
        writeWholeFile(name + ".json", settingsDocument(channel.settings, channel.settings.name));
    }
}

// In the temporary folder `beside`.
fs::path madeBundle(const EpisodeCopy& episode, const std::string& name, const fs::path& beside) {
    const fs::path text = beside / episode.fileName(), settings = beside / "settings.json";
    writeWholeFile(text, episode.text);
    writeWholeFile(settings, settingsDocument(episode.settings, name));
    const fs::path bundle = makeBundle(beside / "bundle", text, settings).folder();
    writeChannels(bundle / "Channels", episode.inputs);
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
        const fs::path& place = error.path1().empty() ? folder : error.path1();
        throw SaverBundleError(place.string() + " cannot be copied: " + error.code().message() +
                               ".");
    } catch (const std::runtime_error& error) { // of bundles and files: whole sentences
        throw SaverBundleError(error.what());
    }
}

fs::path saversFolder() {
    return saverPlaces().savers;
}

} // namespace tarnwick::player
