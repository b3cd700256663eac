// Records performances and replays them.
#pragma once

#include "TarnwickCore/Performance/PerformanceCursor.h"
#include "TarnwickPlatform/Dispatch/DispatchQueue.h"
#include "player/App/Player.h"
#include "player/Performances/ReplayFiles.h"
#include "player/Performing/PerformanceFiles.h"
#include "player/Performing/Recorder.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tarnwick::player {

// The inputs of a document, for its performance.
struct DocumentInputs {
    PerformedInputs files{};              // whole paths, without digests
    std::vector<std::string> remarks{};   // about inputs that have no file
    std::shared_ptr<LiveLevels> device{}; // of a microphone or the desktop; null: another sound
};
using DocumentInputsOf = std::function<DocumentInputs(const OpenDocument&)>;

// The sound file of a replay at its present time; empty: none.
struct ReplayedSound {
    std::shared_ptr<const Performance> performance; // null: there is no replay
    std::string file{};
    bool isPlayed = false;

    bool operator==(const ReplayedSound&) const = default;
};

// On the thread of the windows, which it never blocks: files are read and written on a queue.
class Performer : public QObject {
    Q_OBJECT

  public:
    Performer(Player& player, DocumentInputsOf inputsOf, QObject* parent = nullptr);
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
    void soundReplayed(const tarnwick::player::ReplayedSound& sound); // another one than before

  private:
    struct Loaded {
        std::shared_ptr<const Performance> performance; // null after an error
        std::vector<std::string> sentences{};           // about its files
        ReplayEpisodes episodes{};
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
    PerformedState stateOf(const LiveRecord& record);
    void hearLevels();
    void hearDevice(std::shared_ptr<LiveLevels> device);
    HeardLevels newestLevels() const;
    void showSound(const ReplayedSound& sound);
    static Loaded load(const std::filesystem::path& file,
                       const std::shared_ptr<gpu::Device>& device);
    void start(const Loaded& loaded);
    void showMoment();
    template <typename Work, typename Then> void later(Work work, Then then);

    Player& player_;
    DocumentInputsOf inputsOf_;
    QPointer<OpenDocument> document_; // that is recorded or replayed
    bool isBeginning_ = false;        // the next record begins the recording
    std::optional<Recorder> recorder_;
    std::uint64_t revision_ = 0;         // of the text when the recording began
    std::set<std::string> remarks_;      // about its inputs
    std::shared_ptr<LiveLevels> device_; // whose levels are recorded; null: none
    std::size_t keptChanges_ = 0;
    std::shared_ptr<Keeping> keeping_;
    QTimer flush_, tick_;
    std::optional<PerformanceCursor> cursor_;        // of the replay
    std::shared_ptr<const ReplayedInputs> replayed_; // of the replay
    ReplayedSound sound_;
    Transport clock_;
    std::vector<KeptPerformance> kept_;
    DispatchQueue queue_; // last: its work ends first
};

} // namespace tarnwick::player
