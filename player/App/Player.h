// The player without its windows: the device, the open documents, compiling and drawing.
#pragma once

#include "player/App/LiveDevice.h"
#include "player/App/OpenDocument.h"
#include "player/App/UserSettings.h"
#include "player/Drawing/LivePicture.h"

#include <QObject>
#include <QTimer>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick::player {

// kept: as a draft, which the next player offers.
enum class UnsavedWork : std::uint8_t { isLost, isKept };

// On the thread of the windows.
class Player : public QObject {
    Q_OBJECT

  public:
    Player();
    ~Player() override;

    gpu::Device* device() const { return device_.device().get(); } // null without one
    const std::shared_ptr<gpu::Device>& sharedDevice() const { return device_.device(); }
    // Why there is no device; empty with one.
    const std::string& deviceAbsence() const { return device_.absence(); }
    // Why the active episode is not drawn, in one sentence; empty if it is.
    std::string trouble() const;
    LivePicture& picture() { return *picture_; }
    UserSettings& userSettings() { return userSettings_; }
    const LiveNews& news() const { return news_; }

    const std::vector<std::unique_ptr<OpenDocument>>& documents() const { return documents_; }
    OpenDocument* active() const { return active_; } // null without documents

    // Each makes the document the active one.
    OpenDocument* add(Document document, std::unique_ptr<Autosave> autosave = nullptr);
    // Reads a file in the background, which is added, or becomes active if it is open already.
    // `opened` is called then unless `context` is destroyed; with null if the file cannot be read,
    // which the user is told.
    using Opened = std::function<void(OpenDocument*)>;
    void open(const std::filesystem::path& file, QObject* context, Opened opened);
    void activate(OpenDocument* document);
    // Keeps drafts of all unsaved work, and waits until they are written.
    void keepDraftsNow();
    void close(OpenDocument* document, UnsavedWork unsaved = UnsavedWork::isLost);

    // The size of the picture at full size, in pixels.
    void setPictureSize(const PixelSize& size);
    // [0, 1] from the lower left of the picture; absent: the middle.
    void setMouse(std::optional<std::array<float, 2>> mouse);
    void setDivisor(std::optional<int> divisor); // LiveRecord::divisor
    std::optional<int> divisor() const { return divisor_; }
    // Seconds that a frame may take (FrameTimes.h), in [leastLongestFrame, greatestLongestFrame].
    // Kept in the user's settings.
    void setLongestFrame(double seconds);
    double longestFrame() const { return longestFrame_; }
    // LiveRecord::levels and hearsOwnSound. A call with the same draws a paused picture again.
    void setLevels(std::shared_ptr<const LiveLevels> levels, bool hearsOwnSound);

    // Adds to each record of the active document before it is published, in the order of the calls.
    using AddToRecord = std::function<void(OpenDocument&, LiveRecord&)>;
    void addToRecords(AddToRecord add) { added_.push_back(std::move(add)); }
    // Publishes a record of the present state.
    void publish();

    // Draws a performance of the active document until none is set. `clock` counts seconds of the
    // performance. What the document keeps is not changed.
    struct Replay {
        std::shared_ptr<const Performance> performance;
        std::shared_ptr<const ReplayedInputs> inputs; // never null
    };
    void setReplay(std::optional<Replay> replay, const Transport& clock = {});
    // Particles and frames that are read again are computed anew, as after a seek.
    void restartPicture();

    // Shows one sentence to the user, who need not answer.
    void tell(const QString& sentence) { emit told(sentence); }

  signals:
    void documentAdded(tarnwick::player::OpenDocument* document);
    void documentClosing(tarnwick::player::OpenDocument* document);
    void activeChanged();
    void newsArrived();
    // The record that the drawing thread draws from now on.
    void published(const std::shared_ptr<const LiveRecord>& record);
    void told(const QString& sentence);
    void deviceChanged();         // there is another device, or none
    void resumed(double seconds); // the process was stopped for that long

  private:
    void compile(OpenDocument* document);
    void take(CompileResult result);
    void hear(const LiveNews& news);
    void keepDrafts();
    void keepSoon();
    void skipStop();
    void lookAtFiles();
    // A file that was read for open().
    struct Read {
        std::filesystem::path file;
        std::uint64_t document = 0; // that has it open already; 0: none
        std::optional<DocumentContent> files;
        std::string error;
    };
    struct OpenFile {
        std::filesystem::path file;
        std::uint64_t document;
    };
    static Read read(const std::filesystem::path& file, const std::vector<OpenFile>& open);
    void takeRead(Read read, QObject* context, const Opened& opened);
    // The file of a document, as the document knows it and as it is.
    struct LookedAt {
        std::uint64_t document;
        std::filesystem::path file;
        std::optional<FileWatcher::Stamp> known, now{};
    };
    void takeStamps(const std::vector<LookedAt>& files);
    void noteLoss();
    void useDevice();

    // A program with which the device was lost.
    struct Loss {
        std::uint64_t document, revision;
        double time; // host seconds
        bool isRefused = false;
    };
    bool isRefused(const OpenDocument& document) const;

    UserSettings userSettings_;
    LiveDevice device_;
    std::vector<AddToRecord> added_;
    std::optional<Loss> loss_;     // the last one
    DispatchQueue drafts_, files_; // before the documents, which use them
    std::vector<std::unique_ptr<OpenDocument>> documents_;
    OpenDocument* active_ = nullptr;
    std::uint64_t lastId_ = 0;
    PixelSize pictureSize_{640, 360};
    std::optional<std::array<float, 2>> mouse_;
    std::optional<int> divisor_;
    double longestFrame_;
    std::optional<double> compilingSince_; // of the active document
    std::shared_ptr<const LiveLevels> levels_;
    bool hearsOwnSound_ = true;
    std::optional<Replay> replay_;
    Transport replayClock_;
    std::uint64_t restart_ = 0;
    LiveNews news_;
    QTimer autosave_, watch_;
    double ticked_ = 0;                      // host seconds of the last tick of watch_
    bool isLooking_ = false;                 // at the files, on their queue
    std::unique_ptr<LiveCompiler> compiler_; // after all that its calls use
    std::unique_ptr<LivePicture> picture_;
};

} // namespace tarnwick::player
