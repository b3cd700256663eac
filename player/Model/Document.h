// An episode that is edited: its text, its settings, and what was saved of both.
#pragma once

#include "TarnwickCore/Episode/Episode.h"
#include "player/Model/DocumentFile.h"
#include "player/Model/History.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace tarnwick::player {

// The part of a document that undo restores beside the text, which the editor restores.
struct DocumentState {
    Settings settings;
    std::array<std::optional<ParamValues>, 2> snapshots{}; // A and B

    bool operator==(const DocumentState&) const = default;
};

// What an autosave keeps of a document.
struct Draft {
    std::optional<std::filesystem::path> file{}; // absent: never saved
    std::string title;
    std::string text;
    Settings settings;

    bool operator==(const Draft&) const = default;
};

// One thread at a time.
class Document {
  public:
    // A document that was never saved, named `title`.
    explicit Document(std::string text, std::string title = "Untitled");
    Document(const std::filesystem::path& file, DocumentContent files);
    // Throws DocumentFileError. Blocks.
    static Document open(const std::filesystem::path& file);
    // The document of a draft that was not saved. A file that cannot be read any more is a new
    // document. Blocks.
    static Document recovered(const Draft& draft);

    const std::optional<std::filesystem::path>& file() const { return file_; }
    std::string title() const; // the name of the file without its ending
    const std::string& text() const { return episode_->text; }
    const std::shared_ptr<const Episode>& episode() const { return episode_; } // never null
    std::uint64_t revision() const { return revision_; } // counts the changes of the text
    // One sentence if the file of settings was not settings; empty otherwise.
    const std::string& remark() const { return remark_; }

    void setText(std::string text);

    const DocumentState& state() const { return history_.state(); }
    const Settings& settings() const { return state().settings; }
    History<DocumentState>& history() { return history_; }
    const History<DocumentState>& history() const { return history_; }
    // Changes the settings; `change` and `gesture` are those of History.
    void setSettings(Settings settings, const std::string& change, const std::string& gesture = {});
    // Sets the base value of a parameter. A parameter with keys gets a key at `time` instead.
    void setValue(const std::string& name, float value, double time);
    void setKeys(KeyframeTracks keys, const std::string& change, const std::string& gesture = {});
    // Keeps the values at `time` as snapshot 0 or 1.
    void keepSnapshot(std::size_t index, double time);
    // Sets the base values to the mix of both snapshots: 0 is A, 1 is B. Ignored without both.
    void morph(float mix);

    // The value of a parameter at a time; its default if the settings give none.
    float valueAt(const ParamDecl& param, double time) const;

    bool isTextModified() const { return text() != savedText_ || isFileMissing_; }
    bool areSettingsModified() const { return settings() != savedSettings_; }
    bool isModified() const { return isTextModified() || areSettingsModified(); }

    // What saving writes: the text, and the settings if they were changed. Requires a file.
    DocumentSave saving(OtherText otherText) const;
    DocumentSave savingAs(const std::filesystem::path& file) const;
    // What was written is no longer modified. A document that was saved under another name has that
    // file.
    void note(const DocumentSaved& saved);

    // Of the file when it was read or written here.
    const std::optional<FileWatcher::Stamp>& stamp() const { return stamp_; }
    // Whether `now`, the file's stamp, is another one than when it was read or written here. A
    // removed file, without a stamp, does not differ: this text is all there is.
    bool differsFrom(const std::optional<FileWatcher::Stamp>& now) const {
        return file_ && now && now != stamp_;
    }
    // The file was looked for; true if isFileMissing() changed. Programs that save may remove it
    // for a moment, so that it is missing only when it was missing at the look before too.
    bool noteFilePresence(bool isThere);
    bool isFileMissing() const { return isFileMissing_; }
    // The files were read again. Their text replaces this one, which is lost.
    void take(DocumentContent files);
    // Keeps this text although the file has another one, whose stamp this is.
    void keepMine(const std::optional<FileWatcher::Stamp>& stamp) { stamp_ = stamp; }

    Draft draft() const { return {file_, title(), text(), settings()}; }

  private:
    std::optional<std::filesystem::path> file_;
    std::string title_; // of a document without a file
    std::shared_ptr<const Episode> episode_;
    std::uint64_t revision_ = 1;
    History<DocumentState> history_{DocumentState{}};
    bool hasByteOrderMark_ = false;
    std::string savedText_;
    Settings savedSettings_;
    std::optional<FileWatcher::Stamp> stamp_; // of the file
    int looksWithoutFile_ = 0;
    bool isFileMissing_ = false;
    std::string remark_;
};

} // namespace tarnwick::player
