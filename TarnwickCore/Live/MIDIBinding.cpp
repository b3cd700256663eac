#include "TarnwickCore/Live/MIDIBinding.h"

#include <nlohmann/json.hpp>

namespace tarnwick {
namespace {

std::uint8_t member(const nlohmann::json& binding, const std::string& name,
                    std::uint64_t greatest) {
    const auto found = binding.find(name);
    if (found == binding.end() || !found->is_number_integer())
        throw MIDIBindingError("A MIDI binding has no whole number \"" + name + "\".");
    // nlohmann-json reads every number without a minus as unsigned.
    if (!found->is_number_unsigned() || found->get<std::uint64_t>() > greatest)
        throw MIDIBindingError("A MIDI binding has the " + name + " " + found->dump() +
                               ", which is not from 0 to " + std::to_string(greatest) + ".");
    return found->get<std::uint8_t>();
}

} // namespace

std::string MIDIBinding::label() const {
    return "CC " + std::to_string(controller) + " · ch " + std::to_string(channel + 1);
}

std::string MIDIBinding::encode() const {
    return nlohmann::ordered_json{{"channel", channel}, {"controller", controller}}.dump();
}

MIDIBinding MIDIBinding::decode(std::string_view text) {
    const auto document = nlohmann::json::parse(text.begin(), text.end(), nullptr, false);
    if (document.is_discarded())
        throw MIDIBindingError("The text is not JSON.");
    return decode(document);
}

MIDIBinding MIDIBinding::decode(const nlohmann::json& document) {
    if (!document.is_object())
        throw MIDIBindingError("A MIDI binding is not an object.");
    return {.channel = member(document, "channel", 15),
            .controller = member(document, "controller", 127)};
}

} // namespace tarnwick
