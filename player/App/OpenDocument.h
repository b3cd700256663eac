// A document in the player: edited, compiled and played.
#pragma once

#include "TarnwickCore/Performance/Performance.h"
#include "TarnwickCore/Performance/Transport.h"
#include "player/App/FileWork.h"
#include "player/Compiling/LiveCompiler.h"
#include "player/Model/Document.h"
#include "player/Model/DraftKeeper.h"

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tarnwick::player {

// The text of a file, or why it cannot be read, in one sentence.
struct FileText {
    std::optional<EpisodeText> text;
    std::string error;
};

// On the thread of the windows. Changes go through its functions, which emit the signals.
class OpenDocument : public QObject {
    Q_OBJECT

  public:
    // `id` is its number in the compiler's requests.
    OpenDocument(std::uint64_t id, Document document, std::unique_ptr<DraftKeeper> drafts);
    ~OpenDocument() override;

    std::uint64_t id() const { return id_; }
    const Document& document() const { return document_; }
    // What the controls show: that of the document, or of the performance that is replayed.
    const Transport& transport() const { return replayed_ ? replayed_->transport : transport_; }
    double time() const; // seconds of the episode, now

    // Shows the state of a performance in the controls, without changing the document; absent: the
    // document's own. The transport has the host clock.
    void showReplayed(std::optional<PerformedState> state);

    // The newest result of the compiler; null before the first.
    const CompileResult* result() const { return result_ ? &*result_ : nullptr; }
    // The newest program that compiled; null before it.
    const std::shared_ptr<const ShaderProgram>& program() const { return program_; }
    std::uint64_t programRevision() const { return programRevision_; }

    // The author typed. Compiling follows after a pause.
    void setText(std::string text);
    // Replaces the text from outside of its editor, where the change can be undone.
    void replaceText(std::string text);
    // Changes the numbers in the declaration of a parameter.
    void setParamNumbers(const std::string& name, const ParamNumbers& numbers);
    // Host seconds at which the pause after typing ends; absent: nobody types.
    std::optional<double> compilesAt() const;
    // Asks for compiling at once.
    void compileNow();
    void accept(CompileResult result);
    // The device was replaced: the program of the old one cannot be drawn.
    void forgetProgram();

    // Plays values that replace the keys of their parameters until setValue(), resetValue() or
    // releaseHeld(). They are not part of the settings, nor of what can be undone.
    void hold(const ParamValues& values);
    void releaseHeld();
    const ParamValues& held() const { return held_; }
    // The settings with the held values; what is played.
    Settings playedSettings() const;
    float valueNow(const ParamDecl& param) const; // the value that is played

    void setTransport(const Transport& transport);
    // The process was stopped for that many seconds, in which the clock does not run. A replay goes
    // on.
    void skipStop(double seconds);
    void setValue(const std::string& name, float value);
    void resetValue(const std::string& name);
    void setSettings(Settings settings, const std::string& change, const std::string& gesture = {});
    void endGesture();
    // Takes back the changes of a gesture that has not ended.
    void cancelGesture(const std::string& gesture);
    void keepSnapshot(std::size_t index);
    void morph(float mix);
    void undoSettings();
    void redoSettings();

    // Work with the files runs in the background, one after the other, and does not disturb
    // editing: what is typed meanwhile remains modified. `then` is called with the result on this
    // thread.
    using Saved = std::function<void(const DocumentSaved&)>;
    // Compiles at once. Requires a file.
    void save(OtherText otherText, Saved then);
    void saveAs(const std::filesystem::path& file, Saved then);
    // The text in the file now.
    void readFile(std::function<void(const FileText&)> then);
    // Takes the file's text and settings; undo in the editor brings back this text.
    void reload();
    void keepMine(const std::optional<FileWatcher::Stamp>& stamp);
    bool isFileBusy() const { return fileWork_.isBusy(); }

    // `stamp` is the file's now: whether it was saved or removed by another program. An unmodified
    // document is read again; otherwise changedOutside is emitted once. A document without its file
    // is modified.
    void lookAtFile(const std::optional<FileWatcher::Stamp>& stamp);
    // Keeps a draft of unsaved work, without waiting for the disk.
    void keepDraft();
    void discardDraft();

  signals:
    void compileWanted(OpenDocument* document);
    void textReplaced();    // by another source than the editor
    void textChanged();     // in any way
    void settingsChanged(); // values, keys, snapshots, and what can be undone
    void transportChanged();
    void resultChanged();
    void changedOutside();
    void removedOutside();  // the file is gone; the text stays
    void touchedInReplay(); // a control was moved: the replay ends
    void fileWorkDone();    // isFileBusy() is false
    void fileFailed(const QString& sentence);

  private:
    void endReplay();
    void saveLater(std::function<DocumentSave()> order, Saved then);
    void note(const DocumentSaved& saved);
    void readAgain(bool isWanted);
    void take(DocumentContent files);

    std::uint64_t id_;
    Document document_;
    Transport transport_;
    ParamValues held_;
    std::unique_ptr<DraftKeeper> drafts_;
    std::optional<PerformedState> replayed_; // absent: no replay
    std::optional<CompileResult> result_;
    std::shared_ptr<const ShaderProgram> program_;
    std::uint64_t programRevision_ = 0;
    QTimer pause_;                           // after typing
    std::optional<FileWatcher::Stamp> told_; // the stamp that changedOutside was emitted for
    FileWork fileWork_;                      // last: its calls use the rest
};

} // namespace tarnwick::player
