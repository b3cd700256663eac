#include "player/Exports/EpisodeOrders.h"

#include "TarnwickCore/Animation/DocumentError.h"
#include "TarnwickCore/Episode/FileNames.h"
#include "TarnwickCore/Text/Numbers.h"

#include <utility>

namespace tarnwick::player {
namespace {

constexpr const char* settingsFile = "settings.json";
constexpr const char* chaptersFile = "chapters.json";

std::string sizeText(const PixelSize& size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

// The order of a command that draws the episode with its settings.
Order drawing(const std::string& command, const EpisodeCopy& episode,
              const std::optional<std::filesystem::path>& output) {
    const std::string file = episode.fileName();
    return {.title = episode.title,
            .words = {command, OrderWord::file(file), "--settings", OrderWord::file(settingsFile)},
            .inputs = {{file, episode.text},
                       {settingsFile, settingsDocument(episode.settings, episode.settings.name)}},
            .output = output};
}

void add(Order& order, std::initializer_list<OrderWord> words) {
    order.words.insert(order.words.end(), words);
}

// For a movie, which has the sounds that the player plays.
void addPlayed(Order& order, const EpisodeCopy& episode) {
    const InputCopies& inputs = episode.inputs;
    if (!inputs.sound.empty() && (inputs.isHearing || inputs.playsSound))
        add(order,
            {"--audio", inputs.sound.string(), "--track", inputs.playsSound ? "both" : "own"});
}

void addFormat(Order& order, const MovieFormat& format) {
    add(order, {"--preset", std::string(format.preset)});
    if (format.size)
        add(order, {"--size", sizeText(*format.size)});
    if (format.framesPerSecond)
        add(order, {"--fps", std::to_string(*format.framesPerSecond)});
    if (format.isDraft)
        add(order, {"--draft"});
    if (!format.hasSound)
        add(order, {"--no-sound"});
    if (format.hasWatermark)
        add(order, {"--watermark"});
}

void addChapters(Order& order, const MovieRequest& request) {
    if (request.chapters.empty())
        return;
    const VideoChapters list{.duration = request.duration, .chapters = request.chapters};
    order.inputs.push_back({chaptersFile, list.json()});
    add(order, {"--chapters", OrderWord::file(chaptersFile)});
}

} // namespace

void addHeard(Order& order, const EpisodeCopy& episode) {
    if (!episode.inputs.sound.empty() && episode.inputs.isHearing)
        add(order, {"--audio", episode.inputs.sound.string()});
}

// The settings of an episode are beside it.
void addChannels(Order& order, const EpisodeCopy& episode) {
    for (const ChannelCopy& channel : episode.inputs.channels) {
        const std::string before = channel.address + "=";
        if (!channel.file.empty()) {
            add(order, {"--channel", before + channel.file.string()});
            continue;
        }
        const std::string name = "channel " + channel.address;
        order.inputs.push_back({name + ".metal", channel.text});
        order.inputs.push_back(
            {name + ".json", settingsDocument(channel.settings, channel.settings.name)});
        add(order, {"--channel", OrderWord::file(name + ".metal", before)});
    }
}

// JSON (RFC 8259) cannot represent numbers that are not finite.
std::string settingsDocument(Settings settings, const std::string& name) {
    settings.name = name;
    try {
        return settings.encode();
    } catch (const DocumentError&) {
        return Settings{.name = name}.encode();
    }
}

std::string EpisodeCopy::fileName() const {
    return FileNames::safe(title);
}

Order movieOrder(const MovieRequest& request) {
    Order order = drawing("export", request.episode, request.output);
    addFormat(order, request.format);
    if (request.performance) {
        add(order, {"--performance", request.performance->string()});
    } else {
        addChannels(order, request.episode);
        addPlayed(order, request.episode);
        add(order, {"--start", shortest(request.start), "--duration", shortest(request.duration)});
        if (request.crossfade > 0)
            add(order, {"--loop", shortest(request.crossfade)});
    }
    addChapters(order, request);
    add(order, {"-o", OrderWord::output()});
    return order;
}

Order loopOrder(const LoopRequest& request) {
    Order order = drawing("loop", request.episode, std::nullopt);
    addChannels(order, request.episode);
    add(order,
        {"--start", shortest(request.start), "--around", shortest(request.around), "--range",
         shortest(request.range), "--loop", shortest(request.crossfade), "--fps",
         std::to_string(request.framesPerSecond), "--json", "--seam", OrderWord::file(seamFile)});
    return order;
}

Order stillOrder(const StillRequest& request) {
    Order order = drawing("still", request.episode, request.output);
    addChannels(order, request.episode);
    addHeard(order, request.episode);
    add(order, {"--time", shortest(request.time), "--frame", std::to_string(request.frame),
                "--size", sizeText(request.size)});
    if (request.hasAlpha)
        add(order, {"--alpha"});
    add(order, {"-o", OrderWord::output()});
    return order;
}

Order variationsOrder(const VariationsRequest& request) {
    Order order = drawing("variations", request.episode, request.output);
    addChannels(order, request.episode);
    add(order,
        {"--seed", std::to_string(request.seed), "--from", std::to_string(request.first), "--count",
         std::to_string(request.count), "--spread", shortest(static_cast<double>(request.spread))});
    if (!request.isMovie) {
        addHeard(order, request.episode);
        add(order, {"--sheet", OrderWord::output()});
        return order;
    }
    addPlayed(order, request.episode);
    addFormat(order, request.format);
    add(order, {"--duration", shortest(request.seconds), "-o", OrderWord::output()});
    return order;
}

Order walkthroughOrder(const WalkthroughRequest& request) {
    Order order = drawing("walkthrough", request.episode, request.output);
    addChannels(order, request.episode);
    if (!request.stages.empty())
        add(order, {"--stages"});
    for (const std::filesystem::path& stage : request.stages)
        add(order, {stage.string()});
    if (!request.isMovie) {
        addHeard(order, request.episode);
        add(order, {"--size", sizeText(request.size), "--pages", OrderWord::output()});
        return order;
    }
    addPlayed(order, request.episode);
    addFormat(order, request.format);
    add(order, {"--page-seconds", shortest(request.pageSeconds), "--start", shortest(request.start),
                "-o", OrderWord::output()});
    return order;
}

Order packageOrder(const PackageRequest& request) {
    const std::string file = request.episode.fileName();
    return {.title = request.title,
            .words = {"swiftui", OrderWord::file(file), "--title", request.title, "-o",
                      OrderWord::output()},
            .inputs = {{file, request.episode.text}},
            .output = request.output};
}

} // namespace tarnwick::player
