#include "saver/Installing/InstalledSavers.h"

#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "saver/Installing/InstallRecord.h"
#include "saver/Installing/InstallTurn.h"
#include "saver/Installing/ProgramList.h"
#include "saver/Installing/SaverTexts.h"

#include <algorithm>
#include <cctype>
#include <system_error>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t longestId = 60;

// The files of a saver.
struct SaverFiles {
    fs::path bundle, launcher, description, entry, oldList;
};

SaverFiles filesOf(const std::string& id, const SaverPlaces& places) {
    const fs::path bundle = places.savers / (id + ".saver");
    const std::string program = "tarnwick-" + id;
    return {.bundle = bundle,
            .launcher = bundle / program,
            .description = bundle / (program + ".xml"),
            .entry = places.entries / (program + ".desktop"),
            .oldList = bundle / "xscreensaver.before"};
}

bool isThere(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

// The declarations with the values of the saver as their defaults.
std::vector<ParamDecl> paramsOf(const SaverOrder& order) {
    std::vector<ParamDecl> params = order.episode.params();
    for (ParamDecl& param : params)
        if (const auto value = order.settings.values.find(param.name);
            value != order.settings.values.end())
            param.defaultValue = value->second;
    return params;
}

std::string purposeOf(const Episode& episode) {
    return episode.meta.teaches.empty() ? "A live shader, drawn by Tarnwick."
                                        : episode.meta.teaches + "\n\nDrawn by Tarnwick.";
}

// The settings of XScreenSaver may be private.
void replaceKeepingMode(const fs::path& file, const std::string& text) {
    std::error_code isNew;
    const fs::file_status status = fs::status(file, isNew);
    UnfinishedFile unfinished(file);
    try {
        writeWholeFile(unfinished.path(), text);
    } catch (const WholeFileError& error) {
        throw WholeFileError(file, error.reason);
    }
    if (fs::is_regular_file(status))
        fs::permissions(unfinished.path(), status.permissions());
    unfinished.finish();
}

// A record names no other files, unless somebody changed it.
bool isPlaceOf(const SaverFiles& files, const fs::path& file) {
    const fs::path below = file.lexically_normal().lexically_relative(files.bundle);
    return file == files.entry || (!below.empty() && *below.begin() != "..");
}

void removeFromXScreenSaver(const SaverFiles& files, const InstallRecord& record,
                            const SaverPlaces& places) {
    const auto list = fileBytes(places.xscreensaver);
    if (!list || !listsProgram(*list, files.launcher.string()))
        return;
    const std::string left = withoutProgram(*list, files.launcher.string());
    const std::string own =
        withProgram("", {.name = "", .command = shellWord(files.launcher.string())});
    if (record.madeProgramList && left == withoutProgram(own, files.launcher.string()))
        fs::remove(places.xscreensaver);
    else
        replaceKeepingMode(places.xscreensaver, left);
}

// Keeps what a person put there, and removes the folders of processes that were killed, as each
// TemporaryFolder does where it is made.
void removeIfEmpty(const fs::path& folder) {
    std::error_code error;
    if (!fs::is_empty(folder, error) && !error)
        const TemporaryFolder removing(folder, "removing");
    fs::remove(folder, error);
}

// Removes what an installation made: the files first, which leaves room for the list on a full
// disk, and the record last, so that an interrupted removal can be repeated. Returns sentences
// about files that are kept.
std::vector<std::string> removeMade(const SaverFiles& files, const InstallRecord& record,
                                    const SaverPlaces& places) {
    std::vector<std::string> remarks;
    for (const auto& [file, digests] : record.files) {
        if (!isPlaceOf(files, file) || !isThere(file))
            continue;
        if (isUnchanged(file, record))
            fs::remove(file);
        else
            remarks.push_back(file.string() + " was changed and is kept.");
    }
    removeFromXScreenSaver(files, record, places);
    removeIfEmpty(files.bundle / "Shader");
    removeIfEmpty(files.bundle / "Channels");
    fs::remove(recordFile(files.bundle));
    removeIfEmpty(files.bundle);
    return remarks;
}

// Whether the folder is missing, or was left empty by a process that was killed.
bool isFree(const fs::path& bundle) {
    if (!isThere(bundle))
        return true;
    std::error_code error;
    const fs::directory_iterator entries(bundle, error);
    return !error && std::ranges::all_of(entries, [](const fs::directory_entry& entry) {
        return entry.path().extension() == ".partial"; // of TemporaryFolder
    });
}

std::string nameIn(const fs::path& bundle) {
    if (const auto record = recordIn(bundle); record && !record->name.empty())
        return record->name;
    try {
        return Settings::decode(fileBytes(bundle / "Shader" / "saver.json").value_or("")).name;
    } catch (const DocumentError&) { // named by its folder
        return bundle.stem().string();
    }
}

// The id of a new saver, or of the one with this name: another saver may have the same letters.
std::string idFor(const std::string& name, const SaverPlaces& places) {
    const std::string first = saverId(name);
    std::string id = first;
    for (int number = 2;; ++number) {
        const fs::path bundle = filesOf(id, places).bundle;
        if (isFree(bundle) || !recordIn(bundle) || nameIn(bundle) == name)
            return id;
        id = first + "-" + std::to_string(number);
    }
}

// A file of a saver that is to be written.
struct NewFile {
    fs::path path;
    std::string bytes;
};

// First the record with all files, then the files: at each moment the record explains what is
// there.
class Installation {
  public:
    Installation(const SaverOrder& order, const SaverPlaces& places)
        : order_(order), places_(places),
          files_(filesOf(idFor(order.settings.name, places), places)),
          before_(recordIn(files_.bundle)) {}

    InstallReport run() {
        plan();
        checkPlaces();
        InstallRecord unfinished = record_;
        if (before_)
            for (const auto& [file, digests] : before_->files)
                unfinished.files[file].insert(digests.begin(), digests.end());
        try {
            fs::create_directories(files_.bundle);
            writeRecord(unfinished, files_.bundle);
            writeFiles();
            addToXScreenSaver();
        } catch (...) {
            if (!before_)
                undo(unfinished);
            throw;
        }
        removeUnused();
        writeRecord(record_, files_.bundle);
        report_.bundle = files_.bundle;
        return report_;
    }

  private:
    void plan() {
        record_.name = order_.settings.name;
        hasList_ = isThere(places_.xscreensaver);
        hasXScreenSaver_ = hasList_ || isThere(places_.descriptions);
        record_.madeProgramList = hasList_ ? isListMade() : hasXScreenSaver_;
        planFile(files_.bundle / "Shader" / "shader.metal", order_.episode.text);
        planFile(files_.bundle / "Shader" / "saver.json", order_.settings.encode());
        planFile(files_.launcher,
                 launcherText(order_.settings.name, order_.program, files_.bundle));
        const std::vector<ParamDecl> params = paramsOf(order_);
        planFile(files_.description,
                 descriptionText({.program = files_.launcher.filename().string(),
                                  .name = order_.settings.name,
                                  .text = purposeOf(order_.episode),
                                  .params = params}));
        if (isThere(places_.mateProgram))
            planFile(files_.entry,
                     entryText(order_.settings.name, places_.mateProgram, files_.bundle));
        planOldList();
        for (const BundleChannel& channel : order_.channels)
            planChannel(channel);
    }

    // Whether this saver or another one made the list, which the last of them takes away.
    bool isListMade() const {
        return std::ranges::any_of(installedSavers(places_), [](const InstalledSaver& saver) {
            const auto record = recordIn(saver.bundle);
            return record && record->madeProgramList;
        });
    }

    void planFile(const fs::path& path, std::string bytes) {
        record_.files[path].insert(digestOf(bytes));
        made_.push_back({path, std::move(bytes)});
    }

    // The first one stays, also when the saver is installed again. A list that has the saver is not
    // the list before it.
    void planOldList() {
        if (before_ && before_->files.contains(files_.oldList) && isThere(files_.oldList))
            record_.files[files_.oldList] = before_->files.at(files_.oldList);
        else if (hasList_ && !isThere(files_.oldList))
            if (std::string list = readList(); !listsProgram(list, files_.launcher.string()))
                planFile(files_.oldList, std::move(list));
    }

    void planChannel(const BundleChannel& channel) {
        const std::vector<fs::path> places = channelFiles(files_.bundle, {&channel, 1});
        if (channel.file.empty()) {
            record_.files[places.front()].insert(digestOf(channel.text));
            record_.files[places.back()].insert(digestOf(channel.settings));
            return;
        }
        const auto bytes = fileBytes(channel.file);
        if (!bytes)
            throw InstallError(channel.file.string() + " cannot be read.");
        record_.files[places.front()].insert(digestOf(*bytes));
    }

    void checkPlaces() const {
        if (!isFree(files_.bundle) && !before_)
            throw InstallError(files_.bundle.string() +
                               " already exists and was not installed by tarnwick saver install; "
                               "the saver needs another name.");
        for (const auto& [file, digests] : record_.files)
            if (!isUnchanged(file, before_))
                throw InstallError(file.string() +
                                   " was made or changed by somebody else; the saver needs another "
                                   "name.");
    }

    void writeFiles() {
        writeChannels(files_.bundle, order_.channels);
        for (const NewFile& file : made_) {
            fs::create_directories(file.path.parent_path());
            writeWholeFile(file.path, file.bytes);
        }
        fs::permissions(files_.launcher,
                        fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec,
                        fs::perm_options::add);
        if (record_.files.contains(files_.entry))
            report_.remarks.push_back("mate-screensaver lists it as " + record_.name + ".");
    }

    void addToXScreenSaver() {
        if (!hasXScreenSaver_) {
            report_.remarks.emplace_back("XScreenSaver is not installed here.");
            return;
        }
        const std::string list = hasList_ ? readList() : "";
        if (!listsProgram(list, files_.launcher.string()))
            replaceKeepingMode(
                places_.xscreensaver,
                withProgram(list, {.name = record_.name,
                                   .command = shellWord(files_.launcher.string()) + " --root"}));
        report_.remarks.push_back("XScreenSaver lists it as " + record_.name + ".");
        const fs::path system = places_.descriptions / files_.description.filename();
        if (fileBytes(system) != fileBytes(files_.description))
            report_.remarks.push_back(
                "XScreenSaver reads descriptions from a folder of the system only. For sliders in "
                "its settings: sudo cp " +
                shellWord(files_.description.string()) + " " + shellWord(system.string()));
    }

    std::string readList() const {
        auto text = fileBytes(places_.xscreensaver);
        if (!text)
            throw InstallError(places_.xscreensaver.string() + " cannot be read.");
        return *std::move(text);
    }

    // Files of the last installation, such as channels, that this one does not have.
    void removeUnused() const {
        if (!before_)
            return;
        for (const auto& [file, digests] : before_->files)
            if (!record_.files.contains(file) && isPlaceOf(files_, file) &&
                isUnchanged(file, before_))
                fs::remove(file);
    }

    void undo(const InstallRecord& made) const noexcept try {
        removeMade(files_, made, places_);
    } catch (...) { // the first error is told
    }

    const SaverOrder& order_;
    const SaverPlaces& places_;
    SaverFiles files_;
    std::optional<InstallRecord> before_; // absent for a new saver
    InstallRecord record_;
    std::vector<NewFile> made_; // without channels
    bool hasList_ = false, hasXScreenSaver_ = false;
    InstallReport report_;
};

// What `work` throws as an InstallError.
template <class Work> auto reported(const Work& work) {
    try {
        return work();
    } catch (const InstallError&) {
        throw;
    } catch (const fs::filesystem_error& error) {
        throw InstallError(error.path1().string() +
                           " cannot be written: " + error.code().message() + ".");
    } catch (const std::runtime_error& error) { // of files and bundles: whole sentences
        throw InstallError(error.what());
    }
}

} // namespace

std::string saverId(std::string_view name) {
    std::string id;
    for (const char c : name) {
        if (std::isalnum(static_cast<unsigned char>(c)) && static_cast<unsigned char>(c) < 0x80)
            id += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        else if (!id.empty() && !id.ends_with('-'))
            id += '-';
    }
    id.resize(std::min(id.size(), longestId));
    while (id.ends_with('-'))
        id.pop_back();
    return id.empty() ? "saver" : id;
}

InstallReport installSaver(const SaverOrder& order, const SaverPlaces& places) {
    return reported([&] {
        const InstallTurn turn(places.savers);
        return Installation(order, places).run();
    });
}

std::vector<InstalledSaver> installedSavers(const SaverPlaces& places) {
    const std::string list = fileBytes(places.xscreensaver).value_or("");
    std::vector<InstalledSaver> savers;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(places.savers, missing)) {
        const bool isSaver = isThere(entry.path() / "Shader") || recordIn(entry.path());
        if (entry.path().extension() != ".saver" || !isSaver)
            continue;
        InstalledSaver saver{.name = nameIn(entry.path()), .bundle = entry.path()};
        const SaverFiles files = filesOf(saver.id(), places);
        saver.isInstalled = recordIn(saver.bundle).has_value();
        saver.isListed = listsProgram(list, files.launcher.string());
        saver.hasEntry = isThere(files.entry);
        savers.push_back(std::move(saver));
    }
    std::ranges::sort(savers, {}, &InstalledSaver::bundle);
    return savers;
}

std::optional<InstalledSaver> saverNamed(std::string_view name, const SaverPlaces& places) {
    const std::vector<InstalledSaver> savers = installedSavers(places);
    auto found = std::ranges::find(savers, name, &InstalledSaver::id);
    if (found == savers.end())
        found = std::ranges::find(savers, name, &InstalledSaver::name);
    return found == savers.end() ? std::nullopt : std::optional(*found);
}

InstallReport uninstallSaver(const InstalledSaver& saver, const SaverPlaces& places) {
    return reported([&] {
        const InstallTurn turn(places.savers);
        const auto record = recordIn(saver.bundle);
        if (!record)
            throw InstallError(saver.bundle.string() +
                               " was not installed by tarnwick saver install and is kept.");
        const SaverFiles files = filesOf(saver.id(), places);
        InstallReport report{.bundle = saver.bundle, .remarks = removeMade(files, *record, places)};
        const fs::path system = places.descriptions / files.description.filename();
        if (isThere(system))
            report.remarks.push_back("Its description is left in a folder of the system: sudo rm " +
                                     shellWord(system.string()));
        return report;
    });
}

} // namespace tarnwick
