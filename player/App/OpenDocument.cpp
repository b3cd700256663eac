#include "player/App/OpenDocument.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int typingPause = 250; // milliseconds before the text is compiled

} // namespace

OpenDocument::OpenDocument(std::uint64_t id, Document document, std::unique_ptr<DraftKeeper> drafts)
    : id_(id), document_(std::move(document)), drafts_(std::move(drafts)) {
    transport_ = Transport{}.played(currentMediaTime());
    pause_.setSingleShot(true);
    pause_.setInterval(typingPause);
    connect(&pause_, &QTimer::timeout, this, [this] { emit compileWanted(this); });
    connect(&fileWork_, &FileWork::done, this, &OpenDocument::fileWorkDone);
    connect(&fileWork_, &FileWork::late, this, [this] {
        emit fileFailed(tr("The file of %1 is not read or written yet: its file system does not "
                           "answer. Editing goes on.")
                            .arg(QString::fromStdString(document_.title())));
    });
}

OpenDocument::~OpenDocument() = default;

double OpenDocument::time() const {
    return transport().timeAt(currentMediaTime());
}

void OpenDocument::showReplayed(std::optional<PerformedState> state) {
    const bool moves = (state ? state->transport : transport_) != transport();
    replayed_ = std::move(state);
    if (moves)
        emit transportChanged();
    emit settingsChanged();
}

// Before a change of the document.
void OpenDocument::endReplay() {
    if (replayed_)
        emit touchedInReplay();
    replayed_.reset();
}

void OpenDocument::setText(std::string text) {
    const std::uint64_t before = document_.revision();
    document_.setText(std::move(text));
    if (document_.revision() == before)
        return;
    pause_.start();
    emit textChanged();
}

void OpenDocument::replaceText(std::string text) {
    const std::uint64_t before = document_.revision();
    document_.setText(std::move(text));
    if (document_.revision() == before)
        return;
    emit textReplaced();
    emit textChanged();
    compileNow();
}

void OpenDocument::setParamNumbers(const std::string& name, const ParamNumbers& numbers) {
    std::string text = document_.text();
    const std::vector<ParamEdit> edits = paramEdits(text, name, numbers);
    for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit)
        text.replace(edit->at, edit->length, edit->replacement);
    replaceText(std::move(text));
}

std::optional<double> OpenDocument::compilesAt() const {
    if (!pause_.isActive())
        return std::nullopt;
    return currentMediaTime() + pause_.remainingTime() / 1000.0;
}

void OpenDocument::compileNow() {
    pause_.stop();
    emit compileWanted(this);
}

void OpenDocument::accept(CompileResult result) {
    if (result_ && result.revision < result_->revision)
        return;
    if (result.program) {
        program_ = result.program;
        programRevision_ = result.revision;
    }
    result_ = std::move(result);
    emit resultChanged();
}

void OpenDocument::forgetProgram() {
    program_.reset();
    programRevision_ = 0;
}

void OpenDocument::setTransport(const Transport& transport) {
    endReplay();
    if (transport == transport_)
        return;
    transport_ = transport;
    emit transportChanged();
}

void OpenDocument::skipStop(double seconds) {
    transport_.since += seconds;
    emit transportChanged();
}

void OpenDocument::hold(const ParamValues& values) {
    endReplay();
    ParamValues next = values;
    next.merge(held_);
    held_ = std::move(next);
    emit settingsChanged();
}

void OpenDocument::releaseHeld() {
    held_.clear();
    emit settingsChanged();
}

Settings OpenDocument::playedSettings() const {
    Settings played = document_.settings();
    for (const auto& [name, value] : held_) {
        played.keys.clear(name);
        played.values[name] = value;
    }
    return played;
}

float OpenDocument::valueNow(const ParamDecl& param) const {
    if (replayed_) {
        const ParamValues values = replayed_->settings.valuesAt(time());
        const auto found = values.find(param.name);
        return found == values.end() ? param.defaultValue : found->second;
    }
    const auto held = held_.find(param.name);
    return held == held_.end() ? document_.valueAt(param, time())
                               : std::clamp(held->second, param.min, param.max);
}

void OpenDocument::setValue(const std::string& name, float value) {
    held_.erase(name);
    endReplay();
    document_.setValue(name, value, time());
    emit settingsChanged();
}

void OpenDocument::resetValue(const std::string& name) {
    held_.erase(name);
    Settings next = document_.settings();
    next.values.erase(name);
    next.keys.clear(name);
    setSettings(std::move(next), "Reset " + name);
}

void OpenDocument::setSettings(Settings settings, const std::string& change,
                               const std::string& gesture) {
    endReplay();
    document_.setSettings(std::move(settings), change, gesture);
    emit settingsChanged();
}

void OpenDocument::endGesture() {
    document_.history().endGesture();
}

void OpenDocument::cancelGesture(const std::string& gesture) {
    document_.history().cancelGesture(gesture);
    emit settingsChanged();
}

void OpenDocument::keepSnapshot(std::size_t index) {
    document_.keepSnapshot(index, time());
    emit settingsChanged();
}

void OpenDocument::morph(float mix) {
    endReplay();
    document_.morph(mix);
    emit settingsChanged();
}

void OpenDocument::undoSettings() {
    endReplay();
    document_.history().undo();
    emit settingsChanged();
}

void OpenDocument::redoSettings() {
    endReplay();
    document_.history().redo();
    emit settingsChanged();
}

void OpenDocument::save(OtherText otherText, Saved then) {
    saveLater([this, otherText] { return document_.saving(otherText); }, std::move(then));
    compileNow();
}

void OpenDocument::saveAs(const std::filesystem::path& file, Saved then) {
    saveLater([this, file] { return document_.savingAs(file); }, std::move(then));
}

// The order has the text of the moment when the earlier work is done.
void OpenDocument::saveLater(std::function<DocumentSave()> order, Saved then) {
    fileWork_.add([order = std::move(order)] { return [save = order()] { return saved(save); }; },
                  [this, then = std::move(then)](const DocumentSaved& done) {
                      note(done);
                      then(done);
                  });
}

void OpenDocument::note(const DocumentSaved& saved) {
    const auto before = document_.file();
    document_.note(saved);
    if (!document_.isModified())
        discardDraft();
    if (document_.file() != before)
        compileNow();
    emit textChanged();
}

void OpenDocument::readFile(std::function<void(const FileText&)> then) {
    fileWork_.add(
        [this] {
            return [file = *document_.file()]() -> FileText {
                try {
                    return {readEpisodeText(file), {}};
                } catch (const DocumentFileError& error) {
                    return {std::nullopt, error.what()};
                }
            };
        },
        std::move(then));
}

void OpenDocument::reload() {
    readAgain(true);
}

// Not wanted by the author: the text is replaced only if it is still that of the file, and a file
// that cannot be read is being written; the next look reads it.
void OpenDocument::readAgain(bool isWanted) {
    struct Read {
        std::optional<DocumentContent> files;
        std::string error;
    };
    fileWork_.add(
        [this] {
            return [file = *document_.file()]() -> Read {
                try {
                    return {readDocumentFiles(file), {}};
                } catch (const DocumentFileError& error) {
                    return {std::nullopt, error.what()};
                }
            };
        },
        [this, isWanted](Read read) {
            if (read.files && (isWanted || !document_.isModified()))
                take(std::move(*read.files));
            else if (isWanted)
                emit fileFailed(QString::fromStdString(read.error));
        });
}

void OpenDocument::take(DocumentContent files) {
    document_.take(std::move(files));
    discardDraft();
    emit textReplaced();
    emit textChanged();
    emit settingsChanged();
    compileNow();
}

void OpenDocument::keepMine(const std::optional<FileWatcher::Stamp>& stamp) {
    document_.keepMine(stamp);
    told_.reset();
}

void OpenDocument::lookAtFile(const std::optional<FileWatcher::Stamp>& stamp) {
    if (isFileBusy())
        return; // the next look tells
    if (document_.noteFilePresence(stamp.has_value())) {
        emit textChanged();
        if (document_.isFileMissing())
            emit removedOutside();
    }
    if (!document_.differsFrom(stamp))
        return;
    if (!document_.isModified()) {
        readAgain(false);
        return;
    }
    if (stamp == told_)
        return;
    told_ = stamp;
    emit changedOutside();
}

void OpenDocument::keepDraft() {
    document_.isModified() ? drafts_->keep(document_.draft()) : drafts_->discard();
}

void OpenDocument::discardDraft() {
    drafts_->discard();
}

} // namespace tarnwick::player
