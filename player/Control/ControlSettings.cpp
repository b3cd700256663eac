#include "player/Control/ControlSettings.h"

#include "TarnwickBase/WholeFile.h"
#include "TarnwickCore/Live/MIDIBinding.h"
#include "TarnwickCore/Text/OutsideJSON.h"
#include "TarnwickPlatform/Bundle/TextFile.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tarnwick::player {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;

// A part of the document is not valid. Caught in this file.
struct Invalid {};

void require(bool condition) {
    if (!condition)
        throw Invalid();
}

template <typename Case> std::string_view wordOf(std::span<const CaseName<Case>> names, Case one) {
    return std::ranges::find(names, one, &CaseName<Case>::one)->word;
}

template <typename Case> Case caseOf(std::span<const CaseName<Case>> names, const json& word) {
    require(word.is_string());
    const auto found =
        std::ranges::find(names, word.get_ref<const std::string&>(), &CaseName<Case>::word);
    require(found != names.end());
    return found->one;
}

// The member; the default if it is missing.
std::string optionalText(const json& object, const char* name, std::string byDefault) {
    const json& member = memberOf(object, name);
    require(member.is_null() || member.is_string());
    return member.is_null() ? std::move(byDefault) : member.get<std::string>();
}
bool optionalSwitch(const json& object, const char* name) {
    const json& member = memberOf(object, name);
    require(member.is_null() || member.is_boolean());
    return !member.is_null() && member.get<bool>();
}
std::uint64_t wholeNumber(const json& member, std::uint64_t least, std::uint64_t most) {
    require(member.is_number_unsigned());
    const auto number = member.get<std::uint64_t>();
    require(number >= least && number <= most);
    return number;
}
std::array<float, 2> optionalPair(const json& object, const char* name) {
    const json& member = memberOf(object, name);
    if (member.is_null())
        return {0, 1};
    require(member.is_array() && member.size() == 2);
    std::array<float, 2> pair{};
    for (std::size_t end = 0; end < 2; ++end) {
        require(member[end].is_number());
        pair[end] = member[end].get<float>();
        require(std::isfinite(pair[end]));
    }
    return pair;
}

ordered_json encodedSource(const OSCControl& control) {
    ordered_json osc{{"address", control.address}};
    if (control.argument != 0)
        osc["argument"] = control.argument;
    return {{"osc", osc}};
}
ordered_json encodedSource(const MIDIControl& control) {
    if (control.kind == MIDIControl::Kind::controller)
        return {{"midi", ordered_json::parse(
                             MIDIBinding{control.channel, static_cast<std::uint8_t>(control.number)}
                                 .encode())}};
    ordered_json midi{{"kind", wordOf(kindNames(), control.kind)}, {"channel", control.channel}};
    if (hasNumber(control.kind))
        midi["number"] = control.number;
    return {{"midi", midi}};
}

ControlSource decodedMIDI(const json& midi) {
    require(midi.is_object());
    if (!midi.contains("kind")) {
        try {
            const auto [channel, controller] = MIDIBinding::decode(midi);
            return MIDIControl{MIDIControl::Kind::controller, channel, controller};
        } catch (const MIDIBindingError&) {
            throw Invalid();
        }
    }
    MIDIControl control{.kind = caseOf(kindNames(), memberOf(midi, "kind"))};
    control.channel = static_cast<std::uint8_t>(wholeNumber(memberOf(midi, "channel"), 0, 15));
    if (hasNumber(control.kind))
        control.number = static_cast<std::uint16_t>(
            wholeNumber(memberOf(midi, "number"), 0, mostNumber(control.kind)));
    return control;
}
ControlSource decodedSource(const json& binding) {
    if (binding.contains("midi"))
        return decodedMIDI(memberOf(binding, "midi"));
    const json& osc = memberOf(binding, "osc");
    require(osc.is_object());
    OSCControl control{.address = optionalText(osc, "address", "")};
    require(control.address.starts_with('/'));
    if (osc.contains("argument"))
        control.argument =
            static_cast<std::uint32_t>(wholeNumber(memberOf(osc, "argument"), 0, 1000));
    return control;
}

void encodeTarget(ordered_json& binding, const ControlTarget& target) {
    if (const auto* parameter = std::get_if<ParameterTarget>(&target))
        binding["parameter"] = parameter->name;
    else if (const auto* slider = std::get_if<SliderTarget>(&target))
        binding["slider"] = slider->number;
    else
        binding["transport"] = wordOf(transportNames(), std::get<TransportAction>(target));
}
ControlTarget decodedTarget(const json& binding) {
    if (binding.contains("parameter"))
        return ParameterTarget{optionalText(binding, "parameter", "")};
    if (binding.contains("slider"))
        return SliderTarget{static_cast<int>(wholeNumber(memberOf(binding, "slider"), 1, 1000))};
    return caseOf(transportNames(), memberOf(binding, "transport"));
}

ordered_json encoded(const Binding& binding) {
    ordered_json json =
        std::visit([](const auto& control) { return encodedSource(control); }, binding.source);
    encodeTarget(json, binding.target);
    if (!binding.episode.empty())
        json["episode"] = binding.episode;
    if (std::holds_alternative<OSCControl>(binding.source))
        json["input"] = binding.input;
    json["output"] = binding.output;
    json["curve"] = wordOf(curveNames(), binding.curve);
    json["button"] = wordOf(buttonNames(), binding.button);
    if (binding.encoding != MIDIEncoding::absolute) {
        json["encoding"] = wordOf(encodingNames(), binding.encoding);
        json["step"] = binding.step;
    }
    if (binding.hasPickup)
        json["pickup"] = *binding.hasPickup;
    return json;
}

Binding decodedBinding(const json& binding) {
    require(binding.is_object());
    Binding decoded{.source = decodedSource(binding), .target = decodedTarget(binding)};
    decoded.episode = optionalText(binding, "episode", "");
    decoded.input = optionalPair(binding, "input");
    decoded.output = optionalPair(binding, "output");
    require(std::ranges::all_of(decoded.output, [](float end) { return end >= 0 && end <= 1; }));
    if (binding.contains("curve"))
        decoded.curve = caseOf(curveNames(), memberOf(binding, "curve"));
    if (binding.contains("button"))
        decoded.button = caseOf(buttonNames(), memberOf(binding, "button"));
    if (binding.contains("encoding"))
        decoded.encoding = caseOf(encodingNames(), memberOf(binding, "encoding"));
    if (const json& step = memberOf(binding, "step"); !step.is_null()) {
        require(step.is_number());
        decoded.step = step.get<float>();
        require(decoded.step > 0 && decoded.step <= 1);
    }
    if (binding.contains("pickup"))
        decoded.hasPickup = optionalSwitch(binding, "pickup");
    return decoded;
}

std::uint16_t decodedPort(const json& object, std::uint16_t byDefault) {
    const json& port = memberOf(object, "port");
    return port.is_null() ? byDefault : static_cast<std::uint16_t>(wholeNumber(port, 1, 65535));
}
OSCInput decodedInput(const json& object) {
    const OSCInput byDefault;
    return {optionalSwitch(object, "on"), decodedPort(object, byDefault.port),
            optionalText(object, "address", byDefault.address)};
}
OSCOutput decodedOutput(const json& object) {
    const OSCOutput byDefault;
    return {optionalSwitch(object, "on"), optionalText(object, "host", byDefault.host),
            decodedPort(object, byDefault.port)};
}
MIDIChoice decodedMIDIChoice(const json& object) {
    MIDIChoice choice{.hasPickup = optionalSwitch(object, "pickup")};
    const json& ignored = memberOf(object, "ignored");
    require(ignored.is_null() || ignored.is_array());
    for (const json& name : ignored) {
        require(name.is_string());
        choice.ignored.insert(name.get<std::string>());
    }
    return choice;
}

// A name for the damaged file that no file has.
std::filesystem::path unusedName(const std::filesystem::path& file) {
    std::filesystem::path name = file;
    name += ".damaged";
    for (int count = 2; std::filesystem::exists(std::filesystem::symlink_status(name)); ++count) {
        name = file;
        name += ".damaged-" + std::to_string(count);
    }
    return name;
}

} // namespace

std::filesystem::path controlFile() {
    const char* configuration = std::getenv("XDG_CONFIG_HOME");
    const char* home = std::getenv("HOME");
    std::filesystem::path base;
    if (configuration != nullptr && *configuration == '/')
        base = configuration;
    else
        base = std::filesystem::path(home == nullptr ? "/tmp" : home) / ".config";
    return base / "tarnwick" / "control.json";
}

std::string encoded(const ControlSettings& settings) {
    ordered_json document;
    document["bindings"] = ordered_json::array();
    for (const Binding& binding : settings.bindings)
        document["bindings"].push_back(encoded(binding));
    document["oscInput"] = {{"on", settings.input.isOn},
                            {"port", settings.input.port},
                            {"address", settings.input.address}};
    document["oscOutput"] = {{"on", settings.output.isOn},
                             {"host", settings.output.host},
                             {"port", settings.output.port}};
    document["midi"] = {{"pickup", settings.midi.hasPickup}, {"ignored", settings.midi.ignored}};
    return document.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

ReadControlSettings decoded(std::string_view bytes) {
    const auto document = objectOf(bytes);
    if (!document)
        return {.settings = {}, .isDamaged = true};
    ReadControlSettings read;
    const auto part = [&](const char* name, const auto& decode) {
        try {
            const json& member = memberOf(*document, name);
            if (!member.is_null())
                decode(member);
        } catch (const Invalid&) {
            read.isDamaged = true;
        }
    };
    const auto object = [](const json& member) -> const json& {
        require(member.is_object());
        return member;
    };
    part("oscInput", [&](const json& it) { read.settings.input = decodedInput(object(it)); });
    part("oscOutput", [&](const json& it) { read.settings.output = decodedOutput(object(it)); });
    part("midi", [&](const json& it) { read.settings.midi = decodedMIDIChoice(object(it)); });
    part("bindings", [&](const json& bindings) {
        require(bindings.is_array());
        for (const json& binding : bindings)
            try {
                read.settings.bindings.push_back(decodedBinding(binding));
            } catch (const Invalid&) { // the others are used
                read.isDamaged = true;
            }
    });
    return read;
}

ControlFile readControlFile(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        return {};
    const auto bytes = fileBytes(file);
    if (!bytes)
        return {.remark = file.string() + " cannot be read; no binding is used."};
    auto [settings, isDamaged] = decoded(*bytes);
    ControlFile read{.settings = std::move(settings)};
    if (isDamaged)
        read.remark = file.string() + " is damaged; " +
                      std::to_string(read.settings.bindings.size()) +
                      " of its bindings are used, and the file is kept.";
    return read;
}

void writeControlFile(const std::filesystem::path& file, const ControlSettings& settings) {
    try {
        std::filesystem::create_directories(file.parent_path());
        const auto bytes = fileBytes(file);
        if (bytes && !bytes->empty() && decoded(*bytes).isDamaged)
            std::filesystem::rename(file, unusedName(file));
        writeWholeFile(file, encoded(settings));
    } catch (const std::filesystem::filesystem_error& error) {
        throw ControlFileError(file.string() + " cannot be written: " + error.code().message() +
                               ".");
    } catch (const WholeFileError& error) {
        throw ControlFileError(error.what());
    } catch (const TemporaryFolderError& error) {
        throw ControlFileError(error.what());
    }
}

} // namespace tarnwick::player
