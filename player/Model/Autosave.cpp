#include "player/Model/Autosave.h"

#include "TarnwickBase/WholeFile.h"
#include "TarnwickCore/Text/OutsideJSON.h"
#include "TarnwickPlatform/Bundle/TextFile.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace tarnwick::player {
namespace {

constexpr const char* draftName = "draft.json";
constexpr const char* lockName = "lock";

// The descriptor of the locked file; -1 if another process has the lock or there is no such folder.
int lockOf(const std::filesystem::path& folder) {
    const int descriptor =
        open((folder / lockName).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return -1;
    struct flock whole {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    if (fcntl(descriptor, F_OFD_SETLK, &whole) == 0)
        return descriptor;
    close(descriptor);
    return -1;
}

std::string encoded(const Draft& draft) {
    nlohmann::json json{
        {"title", draft.title}, {"text", draft.text}, {"settings", draft.settings.encode()}};
    if (draft.file)
        json["file"] = draft.file->string();
    return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::optional<Draft> decoded(const std::string& bytes) {
    const auto json = objectOf(bytes);
    const auto text = json ? textOf(*json, "text") : std::nullopt;
    if (!text)
        return std::nullopt;
    Draft draft{.title = textOf(*json, "title").value_or("Untitled"), .text = *text};
    if (const auto file = textOf(*json, "file"))
        draft.file = *file;
    try {
        draft.settings = Settings::decode(textOf(*json, "settings").value_or(""));
    } catch (const DocumentError&) { // the text is worth more than the settings
    }
    return draft;
}

} // namespace

std::filesystem::path stateFolder() {
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    std::filesystem::path base;
    if (state != nullptr && *state == '/')
        base = state;
    else
        base = std::filesystem::path(home == nullptr ? "/tmp" : home) / ".local" / "state";
    return base / "tarnwick";
}

std::filesystem::path draftsFolder() {
    return stateFolder() / "drafts";
}

std::unique_ptr<Autosave> Autosave::make(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    std::string name = (folder / "XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        return nullptr;
    return takeOver(name);
}

std::unique_ptr<Autosave> Autosave::takeOver(const std::filesystem::path& draft) {
    const int lock = lockOf(draft);
    return lock < 0 ? nullptr : std::unique_ptr<Autosave>(new Autosave(draft, lock));
}

Autosave::~Autosave() {
    if (!kept_ && !std::filesystem::exists(folder_ / draftName))
        discard();
    close(lock_);
}

bool Autosave::keep(const Draft& draft) {
    if (kept_ == draft)
        return true;
    try {
        writeWholeFile(folder_ / draftName, encoded(draft));
    } catch (const WholeFileError& error) { // a full disk, a folder that was removed
        failure_ = error.reason;
        return false;
    } catch (const std::exception& error) { // no memory
        failure_ = error.what();
        return false;
    }
    kept_ = draft;
    return true;
}

void Autosave::discard() {
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
    kept_.reset();
}

std::vector<LeftDraft> leftDrafts(const std::filesystem::path& folder) {
    std::vector<LeftDraft> found;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        const auto file = entry.path() / draftName;
        const auto bytes = fileBytes(file);
        const auto draft = bytes ? decoded(*bytes) : std::nullopt;
        const int lock = draft ? lockOf(entry.path()) : -1;
        if (lock < 0)
            continue;
        close(lock);
        found.push_back({entry.path(), *draft, std::filesystem::last_write_time(file, error)});
    }
    std::ranges::sort(found, std::ranges::greater{}, &LeftDraft::time);
    return found;
}

} // namespace tarnwick::player
