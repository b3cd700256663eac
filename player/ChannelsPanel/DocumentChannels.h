// The channels of the open documents: the artist's choices, and their sources.
#pragma once

#include "TarnwickPlatform/Dispatch/DispatchQueue.h"
#include "player/App/Player.h"
#include "player/Channels/ChannelChoice.h"
#include "player/Exports/InputCopies.h"

#include <QObject>
#include <map>
#include <memory>

namespace tarnwick::player {

// On the thread of the windows. Adds the channels to the player's records, and remembers those of
// documents with a file.
class DocumentChannels : public QObject {
    Q_OBJECT

  public:
    DocumentChannels(Player& player, QObject* parent);
    ~DocumentChannels() override;

    ChannelChoices choices(const OpenDocument& document) const;
    // An episode that is not open is opened.
    void choose(OpenDocument& document, std::size_t channel, ChannelChoice choice);
    // The open episode of a choice; null if it is closed.
    OpenDocument* documentOf(const ChannelChoice& choice) const;
    // The channels for an export, and those of the episodes that they show.
    InputCopies copies(const OpenDocument& document) const;
    // Null for a channel without one.
    std::shared_ptr<FrameSource> source(const OpenDocument& document, std::size_t channel) const;

  signals:
    void changed();

  private:
    void take(OpenDocument& document, std::size_t channel, ChannelChoice choice);
    struct Entry {
        ChannelChoices choices;
        std::array<std::shared_ptr<FrameSource>, channelCount> sources;
        std::filesystem::path file; // of the document
    };

    void add(OpenDocument* document);
    void set(OpenDocument& document, const ChannelChoices& choices);
    void remember(OpenDocument& document);
    std::shared_ptr<FrameSource> sourceOf(const ChannelChoice& choice);
    void fill(OpenDocument& document, LiveRecord& record);
    LiveChannelSet channelsOf(const OpenDocument& document) const;
    struct Shown; // the documents on the way to a channel
    void addCopies(const Shown& shown, InputCopies& copies) const;
    void addEpisodes(const LiveChannelSet& channels, LiveChannels& all) const;

    Player& player_;
    std::map<std::uint64_t, Entry> entries_; // by document
    // Documents share the source of a file or camera.
    std::map<std::filesystem::path, std::weak_ptr<FrameSource>> sources_;
    std::shared_ptr<const LiveChannels> published_;
    DispatchQueue files_; // reads and writes what is remembered
};

} // namespace tarnwick::player
