// Records performances and replays them.
#pragma once

#include "TarnwickCore/Performance/InputFiles.h"
#include "TarnwickCore/Performance/PerformanceCursor.h"
#include "TarnwickPlatform/Dispatch/DispatchQueue.h"
#include "player/App/Player.h"
#include "player/Performing/PerformanceFiles.h"
#include "player/Performing/Recorder.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::player {

// The inputs of a document, for its performance.
struct PerformedInputs {
    std::vector<InputFile> files{};
    std::vector<std::string> remarks{}; // about inputs that have no file

    bool operator==(const PerformedInputs&) const = default;
};
using PerformedInputsOf = std::function<PerformedInputs(const OpenDocument&)>;

// On the thread of the windows, which it never blocks: files are read and written on a queue.
class Performer : public QObject {
    Q_OBJECT

  public:
    Performer(Player& player, PerformedInputsOf inputsOf, QObject* parent = nullptr);
    ~Performer() override;

    bool isRecording() const { return recorder_.has_value(); }
    bool isReplaying() const { return cursor_.has_value(); }
    double seconds() const; // of the performance that is recorded or replayed; 0 without one
    double length() const;  // of the one that is replayed, in seconds
    const Transport& clock() const { return clock_; } // of the one that is replayed

    // Records the active document from now on: what moves, and what is shown. The state of its
    // particles and previous frames is computed again first, as the replay does.
    void record();
    // Ends the recording and keeps it.
    void stopRecording();

    // Replays a file with the active document.
    void replay(const std::filesystem::path& file);
    void replayLast();
    void stopReplay();
    // Moves the clock of the replay, whose host clock is the host's.
    void setClock(const Transport& clock);

    // The performances in the folder of performances, the newest first.
    const std::vector<KeptPerformance>& kept() const { return kept_; }
    void refresh();
    void save(const std::filesystem::path& from, const std::filesystem::path& to);

  signals:
    void changed();       // recording or replaying began or ended
    void moved();         // seconds()
    void keptRefreshed(); // kept()

  private:
    struct Loaded {
        std::shared_ptr<const Performance> performance; // null after an error
        FoundInputs inputs{};
        std::string error{};
    };
    // The file of a recording; used on the queue only.
    struct Keeping {
        std::unique_ptr<PerformanceFile> file;
        bool hasFailed = false;
    };

    void hear(const LiveRecord& record, double host);
    void begin(const LiveRecord& record, double host);
    void keepWith(std::function<void(Keeping&)> work);
    void keep(const std::string& lines);
    void keepNew();
    void noteRemarks();
    void noteInputs(const LiveRecord& record);
    void start(const Loaded& loaded);
    void showMoment();
    template <typename Work, typename Then> void later(Work work, Then then);

    Player& player_;
    PerformedInputsOf inputsOf_;
    QPointer<OpenDocument> document_; // that is recorded or replayed
    bool isBeginning_ = false;        // the next record begins the recording
    std::optional<Recorder> recorder_;
    std::uint64_t revision_ = 0; // of the text when the recording began
    PerformedInputs inputs_;     // at that time
    std::size_t keptChanges_ = 0;
    std::shared_ptr<Keeping> keeping_;
    QTimer flush_, tick_;
    std::optional<PerformanceCursor> cursor_; // of the replay
    Transport clock_;
    std::vector<KeptPerformance> kept_;
    DispatchQueue queue_; // last: its work ends first
};

} // namespace tarnwick::player
