#include "saver/Installing/InstalledSavers.h"

#include "TarnwickBase/OutputFile.h"
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Bundle/Bundle.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "saver/Installing/InstallRecord.h"
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

// Writes files and notes them.
class Installation {
  public:
    Installation(const SaverOrder& order, const SaverPlaces& places)
        : order_(order), places_(places), files_(filesOf(saverId(order.settings.name), places)) {}

    InstallReport run() {
        before_ = recordIn(files_.bundle);
        checkPlaces();
        record_.madeProgramList = before_ && before_->madeProgramList;
        try {
            makeShader();
            makeChannels();
            writeTexts();
            addToMate();
            addToXScreenSaver();
        } catch (...) {
            noteUnfinished();
            throw;
        }
        writeRecord(record_, files_.bundle);
        report_.bundle = files_.bundle;
        return report_;
    }

  private:
    void checkPlaces() const {
        if (isThere(files_.bundle) && !before_)
            throw InstallError(files_.bundle.string() +
                               " already exists and was not installed by tarnwick saver install; "
                               "the saver needs another name.");
        std::vector<fs::path> made = channelFiles(files_.bundle, order_.channels);
        made.insert(made.end(), {files_.launcher, files_.description, files_.entry});
        for (const fs::path& file : made)
            if (!isUnchanged(file, before_))
                throw InstallError(file.string() +
                                   " was made or changed by somebody else; the saver needs another "
                                   "name.");
    }

    // So that an installation that failed half way can be removed.
    void noteUnfinished() noexcept try {
        if (before_)
            record_.files.insert(before_->files.begin(), before_->files.end());
        if (!record_.files.empty())
            writeRecord(record_, files_.bundle);
    } catch (...) { // the first error is told
    }

    void makeShader() {
        const TemporaryFolder folder;
        const fs::path text = folder.path() / "shader.metal", settings = folder.path() / "s.json";
        writeWholeFile(text, order_.episode.text);
        writeWholeFile(settings, order_.settings.encode());
        makeBundle(files_.bundle, text, settings);
        const fs::path shader = files_.bundle / "Shader";
        for (const char* name : {"shader.metal", "saver.json", ".tarnwick-made"})
            record_.files[shader / name] = digestOf(fileBytes(shader / name).value_or(""));
    }

    // Removes those of the last installation that are not wanted any more.
    void makeChannels() {
        writeChannels(files_.bundle, order_.channels);
        for (const fs::path& file : channelFiles(files_.bundle, order_.channels))
            record_.files[file] = digestOf(fileBytes(file).value_or(""));
        if (!before_)
            return;
        for (const auto& [file, digest] : before_->files)
            if (file.parent_path() == files_.bundle / "Channels" && !record_.files.contains(file) &&
                isUnchanged(file, before_))
                fs::remove(file);
    }

    void write(const fs::path& file, const std::string& bytes) {
        fs::create_directories(file.parent_path());
        writeWholeFile(file, bytes);
        record_.files[file] = digestOf(bytes);
    }

    void writeTexts() {
        const std::string& name = order_.settings.name;
        write(files_.launcher, launcherText(name, order_.program, files_.bundle));
        fs::permissions(files_.launcher,
                        fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec,
                        fs::perm_options::add);
        const std::vector<ParamDecl> params = paramsOf(order_);
        write(files_.description, descriptionText({.program = files_.launcher.filename().string(),
                                                   .name = name,
                                                   .text = purposeOf(order_.episode),
                                                   .params = params}));
    }

    void addToMate() {
        if (!isThere(places_.mateProgram))
            return;
        write(files_.entry, entryText(order_.settings.name, places_.mateProgram, files_.bundle));
        report_.remarks.push_back("mate-screensaver lists it as " + order_.settings.name + ".");
    }

    void addToXScreenSaver() {
        const bool hasList = isThere(places_.xscreensaver);
        if (!hasList && !isThere(places_.descriptions)) {
            report_.remarks.emplace_back("XScreenSaver is not installed here.");
            return;
        }
        if (hasList)
            keepOldList();
        const std::string list = hasList ? readList() : "";
        if (!listsProgram(list, files_.launcher.string()))
            writeList(
                withProgram(list, {.name = order_.settings.name,
                                   .command = shellWord(files_.launcher.string()) + " --root"}));
        record_.madeProgramList |= !hasList;
        report_.remarks.push_back("XScreenSaver lists it as " + order_.settings.name + ".");
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

    // The first one stays, also when the saver is installed again.
    void keepOldList() {
        if (!isThere(files_.oldList))
            write(files_.oldList, readList());
        else if (before_ && before_->files.contains(files_.oldList))
            record_.files[files_.oldList] = before_->files.at(files_.oldList);
    }

    void writeList(const std::string& text) const {
        replaceKeepingMode(places_.xscreensaver, text);
    }

  public:
    static void replaceKeepingMode(const fs::path& file, const std::string& text) {
        std::error_code isNew;
        const fs::file_status status = fs::status(file, isNew);
        writeWholeFile(file, text);
        if (fs::is_regular_file(status))
            fs::permissions(file, status.permissions());
    }

  private:
    const SaverOrder& order_;
    const SaverPlaces& places_;
    SaverFiles files_;
    std::optional<InstallRecord> before_;
    InstallRecord record_;
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
        Installation::replaceKeepingMode(places.xscreensaver, left);
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
    return reported([&] { return Installation(order, places).run(); });
}

std::vector<InstalledSaver> installedSavers(const SaverPlaces& places) {
    const std::string list = fileBytes(places.xscreensaver).value_or("");
    std::vector<InstalledSaver> savers;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(places.savers, missing)) {
        if (entry.path().extension() != ".saver" || !isThere(entry.path() / "Shader"))
            continue;
        InstalledSaver saver{.name = entry.path().stem().string(), .bundle = entry.path()};
        try {
            saver.name =
                Settings::decode(fileBytes(saver.bundle / "Shader" / "saver.json").value_or(""))
                    .name;
        } catch (const DocumentError&) { // named by its folder
        }
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
        const auto record = recordIn(saver.bundle);
        if (!record)
            throw InstallError(saver.bundle.string() +
                               " was not installed by tarnwick saver install and is kept.");
        const SaverFiles files = filesOf(saver.id(), places);
        InstallReport report{.bundle = saver.bundle};
        removeFromXScreenSaver(files, *record, places);
        for (const auto& [file, digest] : record->files) {
            if (!isPlaceOf(files, file))
                continue;
            if (isUnchanged(file, record))
                fs::remove(file);
            else
                report.remarks.push_back(file.string() + " was changed and is kept.");
        }
        fs::remove(recordFile(saver.bundle));
        std::error_code notEmpty; // what a person put there is kept
        fs::remove(saver.bundle / "Shader", notEmpty);
        fs::remove(saver.bundle / "Channels", notEmpty);
        fs::remove(saver.bundle, notEmpty);
        const fs::path system = places.descriptions / files.description.filename();
        if (isThere(system))
            report.remarks.push_back("Its description is left in a folder of the system: sudo rm " +
                                     shellWord(system.string()));
        return report;
    });
}

} // namespace tarnwick
