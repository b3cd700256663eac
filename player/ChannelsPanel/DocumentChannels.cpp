#include "player/ChannelsPanel/DocumentChannels.h"

#include "player/Channels/ChannelMemory.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>
#include <utility>

namespace tarnwick::player {

using Kind = ChannelChoice::Kind;

DocumentChannels::DocumentChannels(Player& player, QObject* parent)
    : QObject(parent), player_(player) {
    connect(&player_, &Player::documentAdded, this, &DocumentChannels::add);
    connect(&player_, &Player::documentClosing, this, [this](OpenDocument* document) {
        entries_.erase(document->id());
        emit changed();
    });
    player_.addToRecords(
        [this](OpenDocument& document, LiveRecord& record) { fill(document, record); });
}

DocumentChannels::~DocumentChannels() = default;

ChannelChoices DocumentChannels::choices(const OpenDocument& document) const {
    const auto found = entries_.find(document.id());
    return found == entries_.end() ? ChannelChoices{} : found->second.choices;
}

std::shared_ptr<FrameSource> DocumentChannels::source(const OpenDocument& document,
                                                      std::size_t channel) const {
    const auto found = entries_.find(document.id());
    return found == entries_.end() ? nullptr : found->second.sources.at(channel);
}

void DocumentChannels::add(OpenDocument* document) {
    // A document that is saved under another name takes its channels along.
    connect(document, &OpenDocument::textChanged, this, [this, document] {
        const auto& file = document->document().file();
        if (file && *file != entries_[document->id()].file)
            remember(*document);
    });
    const auto& file = document->document().file();
    entries_[document->id()].file = file.value_or(std::filesystem::path());
    if (!file)
        return;
    files_.async([this, file = *file, opened = QPointer<OpenDocument>(document)] {
        const ChannelChoices found = rememberedChannels(channelsFile(), file);
        if (found == ChannelChoices{})
            return;
        QMetaObject::invokeMethod(
            this,
            [this, found, opened] {
                if (opened && choices(*opened) == ChannelChoices{})
                    set(*opened, found);
            },
            Qt::QueuedConnection);
    });
}

void DocumentChannels::choose(OpenDocument& document, std::size_t channel, ChannelChoice choice) {
    if (choice.kind != Kind::episode || documentOf(choice) != nullptr) {
        take(document, channel, std::move(choice));
        return;
    }
    player_.open(
        choice.place, this,
        [this, channel, choice, chosen = QPointer<OpenDocument>(&document)](OpenDocument* shown) {
            if (shown == nullptr || !chosen)
                return;
            player_.activate(chosen);
            ChannelChoice found = choice;
            found.document = shown->id();
            take(*chosen, channel, std::move(found));
        });
}

void DocumentChannels::take(OpenDocument& document, std::size_t channel, ChannelChoice choice) {
    ChannelChoices next = choices(document);
    next.at(channel) = std::move(choice);
    set(document, next);
    remember(document);
}

void DocumentChannels::set(OpenDocument& document, const ChannelChoices& choices) {
    Entry& entry = entries_[document.id()];
    for (std::size_t channel = 0; channel < channelCount; ++channel)
        if (choices[channel] != entry.choices[channel])
            entry.sources[channel] = sourceOf(choices[channel]);
    entry.choices = choices;
    player_.publish();
    emit changed();
}

void DocumentChannels::remember(OpenDocument& document) {
    const auto& file = document.document().file();
    if (!file)
        return;
    entries_[document.id()].file = *file;
    files_.async([file = *file, choices = choices(document)] {
        rememberChannels(channelsFile(), file, choices);
    });
}

std::shared_ptr<FrameSource> DocumentChannels::sourceOf(const ChannelChoice& choice) {
    if (choice.kind != Kind::file && choice.kind != Kind::camera)
        return nullptr;
    std::erase_if(sources_, [](const auto& source) { return source.second.expired(); });
    if (const auto found = sources_.find(choice.place); found != sources_.end())
        if (auto shared = found->second.lock())
            return shared;
    // The drawing thread may keep a source for longer than the window lives.
    const auto tell = [channels = QPointer<DocumentChannels>(this)](const std::string& sentence) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [channels, sentence] {
                if (channels)
                    channels->player_.tell(QString::fromStdString(sentence));
            },
            Qt::QueuedConnection);
    };
    auto made = std::make_shared<FrameSource>(
        choice.kind == Kind::camera ? SourceKind::camera : SourceKind::file, choice.place, tell);
    sources_[choice.place] = made;
    return made;
}

OpenDocument* DocumentChannels::documentOf(const ChannelChoice& choice) const {
    if (choice.kind != Kind::episode)
        return nullptr;
    for (const auto& document : player_.documents())
        if (choice.document != 0 ? document->id() == choice.document
                                 : document->document().file() == choice.place)
            return document.get();
    return nullptr;
}

struct DocumentChannels::Shown {
    const OpenDocument& document;
    std::string address; // of the document, with a point: "3."; empty for the one that is exported
    const Shown* by = nullptr;

    bool isShownBy(const OpenDocument* other) const {
        return other == &document || (by != nullptr && by->isShownBy(other));
    }
};

InputCopies DocumentChannels::copies(const OpenDocument& document) const {
    InputCopies copies;
    addCopies({document, {}}, copies);
    return copies;
}

void DocumentChannels::addCopies(const Shown& shown, InputCopies& copies) const {
    const Document& document = shown.document.document();
    if (!document.episode()->shader.usesInputs)
        return;
    const ChannelChoices all = choices(shown.document);
    for (std::size_t index = 0; index < channelCount; ++index) {
        const ChannelChoice& choice = all[index];
        const std::string address = shown.address + std::to_string(index);
        const OpenDocument* episode = documentOf(choice);
        if (choice.kind == Kind::file)
            copies.channels.push_back({.address = address, .file = choice.place});
        else if (choice.kind == Kind::camera)
            copies.remarks.push_back("Channel " + address +
                                     " is a camera, which is black in films and stills.");
        else if (episode != nullptr && shown.isShownBy(episode))
            copies.remarks.push_back("Channel " + address +
                                     " shows an episode that shows it, which is black in films and "
                                     "stills.");
        else if (episode != nullptr) {
            copies.channels.push_back(
                {.address = address,
                 .text = episode->document().text(),
                 .settings = episode->document().settings(),
                 .document = episode->document().file().value_or(std::filesystem::path())});
            addCopies({*episode, address + ".", &shown}, copies);
        }
    }
}

void DocumentChannels::fill(OpenDocument& document, LiveRecord& record) {
    auto made = std::make_shared<LiveChannels>();
    made->document = document.id();
    made->channels = channelsOf(document);
    if (made->channels == LiveChannelSet{})
        return;
    addEpisodes(made->channels, *made);
    // The same object while nothing changes.
    if (!published_ || *published_ != *made)
        published_ = std::move(made);
    record.channels = published_;
}

LiveChannelSet DocumentChannels::channelsOf(const OpenDocument& document) const {
    LiveChannelSet channels;
    const auto found = entries_.find(document.id());
    if (found == entries_.end())
        return channels;
    for (std::size_t index = 0; index < channelCount; ++index) {
        channels[index].source = found->second.sources[index];
        if (const OpenDocument* shown = documentOf(found->second.choices[index]))
            channels[index].document = shown->id();
    }
    return channels;
}

void DocumentChannels::addEpisodes(const LiveChannelSet& channels, LiveChannels& all) const {
    for (const LiveChannel& channel : channels) {
        if (channel.document == 0 || channel.document == all.document ||
            all.episodes.contains(channel.document))
            continue;
        const OpenDocument* document =
            documentOf({.kind = Kind::episode, .document = channel.document});
        if (document == nullptr || !document->program())
            continue;
        const LiveChannelSet own = channelsOf(*document);
        const Settings& settings = document->document().settings();
        all.episodes[channel.document] = {.program = document->program(),
                                          .settings = std::make_shared<const Settings>(
                                              settings.fitted(document->program()->params())),
                                          .channels = own};
        addEpisodes(own, all);
    }
}

} // namespace tarnwick::player
