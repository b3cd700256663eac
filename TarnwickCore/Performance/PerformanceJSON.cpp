// Performances as lines of JSON (RFC 8259): the first has the beginning, each further one a change,
// the last one the length and the remarks. A line is short, because an hour has 200,000 of them,
// and complete in itself, so that a file is whole up to its last line.
#include "TarnwickCore/Animation/DocumentJSON.h"
#include "TarnwickCore/Animation/KeyframeTracksJSON.h"
#include "TarnwickCore/Performance/Performance.h"
#include "TarnwickCore/Text/Numbers.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;

constexpr int version = 1;
constexpr const char* kind = "performance";

// Writing.

double finite(double number) {
    if (!std::isfinite(number))
        throw DocumentError("A performance holds a number that is not finite.");
    return number;
}

ordered_json documentOf(const Transport& transport) {
    ordered_json list{finite(transport.time), finite(transport.since), finite(transport.speed),
                      transport.isPlaying};
    if (transport.loop) {
        list.push_back(finite(transport.loop->start));
        list.push_back(finite(transport.loop->end));
    }
    return list;
}

ordered_json documentOf(const Performance::Input& input) {
    ordered_json document{{"input", input.name}};
    if (!input.file)
        return document;
    document["file"] = input.file->file;
    document["bytes"] = input.file->bytes;
    document["sha256"] = input.file->sha256;
    if (input.file->isPlayed)
        document["played"] = true;
    return document;
}

ordered_json documentOf(const PerformedInputs& inputs) {
    ordered_json list = ordered_json::array();
    for (const auto& [name, file] : inputs)
        list.push_back(documentOf(Performance::Input{name, file}));
    return list;
}

ordered_json documentOf(const PointerPlace& place) {
    if (!place)
        return nullptr;
    return {asWritten(static_cast<float>(finite((*place)[0]))),
            asWritten(static_cast<float>(finite((*place)[1])))};
}

struct Writing {
    ordered_json operator()(const Performance::Value& change) const {
        ordered_json line{"value", change.name};
        if (change.value) {
            finite(*change.value);
            line.push_back(asWritten(*change.value));
        }
        return line;
    }
    ordered_json operator()(const Performance::Track& change) const {
        KeyframeTracks tracks;
        tracks.tracks[change.name] = change.keys;
        return {"keys", tarnwick::documentOf(tracks)};
    }
    ordered_json operator()(const Performance::Pointer& change) const {
        return {"mouse", documentOf(change.place)};
    }
    ordered_json operator()(const Transport& change) const { return {"clock", documentOf(change)}; }
    ordered_json operator()(const Performance::Input& change) const {
        return {"input", documentOf(change)};
    }
    ordered_json operator()(const HeardLevels& change) const {
        return {"levels",
                change.codes ? ordered_json(change.codes->encode()) : ordered_json(nullptr)};
    }
};

std::string lineOf(const ordered_json& document) {
    return document.dump(-1, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

// Reading. `where` begins the sentence of an error.

double numberOf(const json& value, const std::string& where) {
    if (!value.is_number())
        throw DocumentError(where + " has " + value.dump() + " where a number is required.");
    return value.get<double>(); // finite: the parser rejects larger numbers
}

// A number in [-most, most].
double boundedOf(const json& value, double most, const std::string& where) {
    const double number = numberOf(value, where);
    if (!(std::abs(number) <= most))
        throw DocumentError(where + " has the time " + shortest(number) +
                            " s; it must be at most " + shortest(most) + " s.");
    return number;
}

Transport transportOf(const json& list, const std::string& where) {
    const bool isList = list.is_array() && (list.size() == 4 || list.size() == 6);
    if (!isList || !list[3].is_boolean())
        throw DocumentError(where + " has a clock that is not [time, since, speed, playing] or "
                                    "[time, since, speed, playing, loop start, loop end].");
    Transport transport{.time = std::max(boundedOf(list[0], Performance::latestClock, where), 0.0),
                        .since = boundedOf(list[1], Performance::longest, where),
                        .speed = std::clamp(numberOf(list[2], where), -Transport::longestSpeed,
                                            Transport::longestSpeed),
                        .isPlaying = list[3].get<bool>()};
    if (list.size() == 4)
        return transport;
    const LoopRange loop{boundedOf(list[4], Performance::latestClock, where),
                         boundedOf(list[5], Performance::latestClock, where)};
    if (!(loop.start >= 0 && loop.start < loop.end))
        throw DocumentError(where + " has a loop that does not end after its start.");
    transport.loop = loop;
    return transport;
}

PointerPlace placeOf(const json& list, const std::string& where) {
    if (list.is_null())
        return std::nullopt;
    if (!list.is_array() || list.size() != 2)
        throw DocumentError(where + " has a place of the mouse that is not [x, y].");
    const auto share = [&](const json& value) {
        return static_cast<float>(std::clamp(numberOf(value, where), 0.0, 1.0));
    };
    return std::array{share(list[0]), share(list[1])};
}

Performance::Value valueOf(const json& line, const std::string& where) {
    if (line.size() > 4 || line.size() < 3 || !line[2].is_string())
        throw DocumentError(where + " is not [seconds, \"value\", name, number].");
    Performance::Value change{.name = line[2].get<std::string>()};
    if (line.size() == 4)
        change.value = singleOf(line[3], where + ": the value");
    return change;
}

Performance::Track trackOf(const json& line, const std::string& where) {
    const KeyframeTracks read = keyframeTracksOf(line[2], where);
    if (read.tracks.size() != 1)
        throw DocumentError(where + " does not have the keys of one parameter.");
    return {read.tracks.begin()->first, read.tracks.begin()->second};
}

std::string textMember(const json& object, const char* name, const std::string& where) {
    const json& value = requiredMember(object, name, where);
    if (!value.is_string())
        throw DocumentError(where + " has a \"" + name + "\" that is not text.");
    return value.get<std::string>();
}

// "audio", or numbers of channels with points between them.
bool isInputName(std::string_view name) {
    bool isInput = name.size() % 2 == 1;
    for (std::size_t at = 0; at < name.size(); ++at)
        isInput &= at % 2 == 0 ? name[at] >= '0' && name[at] <= '3' : name[at] == '.';
    return isInput || name == soundInput;
}

std::optional<PerformedFile> fileOf(const json& document, const std::string& where) {
    if (!document.contains("file"))
        return std::nullopt;
    const double bytes = requiredNumber(document, "bytes", where);
    if (!(bytes >= 0 && bytes < 0x1p53))
        throw DocumentError(where + " has an input of " + shortest(bytes) + " bytes.");
    return PerformedFile{.file = textMember(document, "file", where),
                         .bytes = static_cast<std::uint64_t>(bytes),
                         .sha256 = textMember(document, "sha256", where),
                         .isPlayed = document.contains("played") && document["played"] == true};
}

Performance::Input inputOf(const json& document, const std::string& where) {
    const std::string name = textMember(document, "input", where);
    if (!isInputName(name))
        throw DocumentError(where + " has the input \"" + name +
                            "\"; it must be audio, or a channel such as 3 or 3.0.");
    return {.name = name, .file = fileOf(document, where)};
}

HeardLevels levelsOf(const json& value, const std::string& where) {
    if (value.is_null())
        return {};
    const auto codes =
        value.is_string() ? LevelCodes::decode(value.get_ref<const std::string&>()) : std::nullopt;
    if (!codes)
        throw DocumentError(where + " has levels that are not 352 letters of Base64.");
    return {std::make_shared<const LevelCodes>(*codes)};
}

Performance::What whatOf(const json& line, const std::string& where) {
    const std::string& kindOfChange = line[1].get_ref<const std::string&>();
    if (kindOfChange == "value")
        return valueOf(line, where);
    if (kindOfChange == "keys")
        return trackOf(line, where);
    if (kindOfChange == "mouse")
        return Performance::Pointer{placeOf(line[2], where)};
    if (kindOfChange == "clock")
        return transportOf(line[2], where);
    if (kindOfChange == "input")
        return inputOf(line[2], where);
    if (kindOfChange == "levels")
        return levelsOf(line[2], where);
    throw DocumentError(where + " has a change of the unknown kind \"" + kindOfChange + "\".");
}

Performance::Change changeOf(const json& line, const std::string& where) {
    if (!line.is_array() || line.size() < 3 || !line[1].is_string())
        throw DocumentError(where + " is not a change: [seconds, kind, ...].");
    return {boundedOf(line[0], Performance::longest, where), whatOf(line, where)};
}

// Performances without inputs do not have the member.
PerformedInputs inputsOf(const json& line, const std::string& where) {
    PerformedInputs inputs;
    if (!line.contains("inputs"))
        return inputs;
    if (!line["inputs"].is_array())
        throw DocumentError(where + " has \"inputs\" that are not a list.");
    for (const json& document : line["inputs"])
        if (const Performance::Input input = inputOf(document, where); input.file)
            inputs[input.name] = *input.file;
    return inputs;
}

[[noreturn]] void notAPerformance() {
    throw DocumentError("The document is not a performance.", DocumentError::Cause::otherKind);
}

Performance beginningOf(const json& line) {
    const std::string where = "Line 1";
    if (!line.is_object() || !line.contains("kind") || line["kind"] != kind)
        notAPerformance();
    if (const double found = requiredNumber(line, "version", where); found != version)
        throw DocumentError("The performance has version " + shortest(found) +
                            "; this release reads version " + std::to_string(version) + ".");
    const json& episode = requiredMember(line, "episode", where);
    Performance performance{.episode = {.title = textMember(episode, "title", where),
                                        .sha256 = textMember(episode, "sha256", where)}};
    performance.start = {.settings =
                             Settings::decode(requiredMember(line, "settings", where).dump()),
                         .transport = transportOf(requiredMember(line, "clock", where), where),
                         .pointer = placeOf(requiredMember(line, "mouse", where), where),
                         .inputs = inputsOf(line, where)};
    if (line.contains("levels"))
        performance.start.heard = levelsOf(line["levels"], where);
    return performance;
}

void readEnd(const json& line, const std::string& where, Performance& performance) {
    performance.length =
        std::max(performance.length,
                 boundedOf(requiredMember(line, "length", where), Performance::longest, where));
    const json& remarks = requiredMember(line, "remarks", where);
    for (const json& remark : remarks)
        if (remark.is_string())
            performance.remarks.push_back(remark.get<std::string>());
}

// The JSON value of a line of a document. Throws DocumentError with the number of the line.
json parsedLine(std::string_view text, const std::string& where) {
    try {
        return parsedDocument(text);
    } catch (const DocumentError& error) {
        const std::string sentence = error.what(), first = "Line 1,";
        throw DocumentError(sentence.starts_with(first)
                                ? where + "," + sentence.substr(first.size())
                                : where + ": " + sentence);
    }
}

// Takes the first line off `text`, and says whether its line feed is there.
std::pair<std::string_view, bool> takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return {line, end != std::string_view::npos};
}

} // namespace

std::string Performance::encodedBeginning() const {
    ordered_json line{{"kind", kind},
                      {"version", version},
                      {"episode", {{"title", episode.title}, {"sha256", episode.sha256}}},
                      {"settings", ordered_json::parse(start.settings.encode())},
                      {"clock", documentOf(start.transport)},
                      {"mouse", documentOf(start.pointer)}};
    if (!start.inputs.empty())
        line["inputs"] = documentOf(start.inputs);
    if (start.heard.codes)
        line["levels"] = start.heard.codes->encode();
    return lineOf(line);
}

std::string Performance::encoded(std::span<const Change> changes) {
    std::string lines;
    for (const Change& change : changes) {
        ordered_json line = std::visit(Writing{}, change.what);
        line.insert(line.begin(), finite(change.time));
        lines += lineOf(line);
    }
    return lines;
}

std::string Performance::encodedEnd() const {
    return lineOf({{"length", finite(length)}, {"remarks", remarks}});
}

std::string Performance::encode() const {
    return encodedBeginning() + encoded(changes) + encodedEnd();
}

Performance Performance::decode(std::string_view text) {
    const auto [first, isFirstWhole] = takeLine(text);
    if (!first.starts_with('{'))
        notAPerformance();
    Performance performance = beginningOf(parsedLine(first, "Line 1"));
    for (std::int64_t number = 2; !text.empty(); ++number) {
        const auto [line, isWhole] = takeLine(text);
        if (!isWhole) // the last one, cut off
            break;
        const std::string where = "Line " + std::to_string(number);
        const json document = parsedLine(line, where);
        if (document.is_object()) {
            readEnd(document, where, performance);
            return performance;
        }
        performance.changes.push_back(changeOf(document, where));
        const double time = performance.changes.back().time;
        if (!(time >= performance.length))
            throw DocumentError(where + " is at " + shortest(time) +
                                " s, before the change above it.");
        performance.length = time;
    }
    performance.remarks.emplace_back(
        "The recording was interrupted; the performance ends with its last change.");
    return performance;
}

Performance::Summary Performance::summary(std::string_view text) {
    const auto [first, isFirstWhole] = takeLine(text);
    if (!first.starts_with('{'))
        notAPerformance();
    Summary summary{.title = beginningOf(parsedLine(first, "Line 1")).episode.title};
    if (const std::size_t end = text.rfind('\n'); end != std::string_view::npos) {
        const std::string_view whole = text.substr(0, end);
        const std::string where = "The last line";
        const json last = parsedLine(whole.substr(whole.rfind('\n') + 1), where);
        const json* time = &last;
        if (last.is_object())
            time = &requiredMember(last, "length", where);
        else if (last.is_array() && !last.empty())
            time = &last[0];
        summary.length = boundedOf(*time, Performance::longest, where);
    }
    return summary;
}

} // namespace tarnwick
