#include "player/Model/Document.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

std::shared_ptr<const Episode> episodeOf(std::string text,
                                         const std::optional<std::filesystem::path>& file,
                                         const std::string& title) {
    return std::make_shared<const Episode>(
        Episode::of(std::move(text), file ? file->string() : title));
}

} // namespace

Document::Document(std::string text, std::string title)
    : title_(std::move(title)), episode_(episodeOf(std::move(text), {}, title_)),
      savedText_(episode_->text) {}

Document::Document(const std::filesystem::path& file, DocumentContent files) : Document("") {
    file_ = file;
    take(std::move(files));
    history_ = History<DocumentState>(state());
}

Document Document::open(const std::filesystem::path& file) {
    return Document(file, readDocumentFiles(file));
}

Document Document::recovered(const Draft& draft) {
    Document document("", draft.title);
    if (draft.file) {
        try {
            document = open(*draft.file);
        } catch (const DocumentFileError&) { // removed since
            document.title_ = draft.title;
        }
    }
    document.setText(draft.text);
    document.setSettings(draft.settings, "Recover settings");
    return document;
}

std::string Document::title() const {
    return file_ ? file_->stem().string() : title_;
}

void Document::setText(std::string text) {
    if (text == episode_->text)
        return;
    episode_ = episodeOf(std::move(text), file_, title_);
    ++revision_;
}

void Document::setSettings(Settings settings, const std::string& change,
                           const std::string& gesture) {
    DocumentState next = state();
    next.settings = std::move(settings);
    history_.push(std::move(next), change, gesture);
}

void Document::setValue(const std::string& name, float value, double time) {
    Settings next = settings();
    if (next.keys.keys(name).empty())
        next.values[name] = value;
    else
        next.keys.set(name, time, value);
    setSettings(std::move(next), "Change " + name, "value " + name);
}

void Document::setKeys(KeyframeTracks keys, const std::string& change, const std::string& gesture) {
    Settings next = settings();
    next.keys = std::move(keys);
    setSettings(std::move(next), change, gesture);
}

void Document::keepSnapshot(std::size_t index, double time) {
    DocumentState next = state();
    ParamValues values;
    for (const ParamDecl& param : episode_->params())
        values[param.name] = valueAt(param, time);
    next.snapshots.at(index) = std::move(values);
    history_.push(std::move(next), index == 0 ? "Keep snapshot A" : "Keep snapshot B");
}

void Document::morph(float mix) {
    const auto& [a, b] = state().snapshots;
    if (!a || !b)
        return;
    Settings next = settings();
    for (const auto& [name, from] : *a)
        if (const auto to = b->find(name); to != b->end())
            next.values[name] = from + (to->second - from) * mix;
    setSettings(std::move(next), "Morph between snapshots", "morph");
}

float Document::valueAt(const ParamDecl& param, double time) const {
    const ParamValues values = settings().valuesAt(time);
    const auto found = values.find(param.name);
    return found == values.end() ? param.defaultValue
                                 : std::clamp(found->second, param.min, param.max);
}

DocumentSave Document::saving(OtherText otherText) const {
    precondition(file_.has_value(), "a document that is saved has a file");
    return {.file = *file_,
            .text = {text(), hasByteOrderMark_, stamp_},
            .settings = areSettingsModified() ? std::optional(settings()) : std::nullopt,
            .otherText = otherText};
}

DocumentSave Document::savingAs(const std::filesystem::path& file) const {
    return {.file = file,
            .text = {text(), hasByteOrderMark_},
            .settings = settings() == Settings{} ? std::nullopt : std::optional(settings())};
}

void Document::note(const DocumentSaved& saved) {
    const DocumentSave& save = saved.save;
    if (!saved.isTextWritten)
        return;
    if (file_ != save.file) {
        savedSettings_ = {};
        file_ = save.file;
        episode_ = episodeOf(text(), file_, title_);
    }
    stamp_ = save.text.stamp;
    savedText_ = save.text.text;
    looksWithoutFile_ = 0;
    isFileMissing_ = false;
    if (save.settings && saved.error.empty())
        savedSettings_ = *save.settings;
}

bool Document::noteFilePresence(bool isThere) {
    looksWithoutFile_ = isThere || !file_ ? 0 : std::min(looksWithoutFile_ + 1, 2);
    const bool wasMissing = isFileMissing_;
    isFileMissing_ = looksWithoutFile_ > 1;
    return isFileMissing_ != wasMissing;
}

void Document::take(DocumentContent files) {
    stamp_ = files.text.stamp;
    hasByteOrderMark_ = files.text.hasByteOrderMark;
    savedText_ = files.text.text;
    setText(std::move(files.text.text));
    remark_ = files.beside.remark;
    savedSettings_ = files.beside.settings;
    setSettings(std::move(files.beside.settings), "Read the file again");
}

} // namespace tarnwick::player
