// Documents in JSON: keyframe tracks, settings of a saver, MIDI bindings, answers of a service.
#include "TarnwickCore/Animation/KeyframeTracks.h"
#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Live/MIDIBinding.h"
#include "TarnwickCore/Service/ServiceError.h"
#include "TarnwickCore/Service/ServiceRecords.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"

#include <limits>

using namespace tarnwick;
using namespace tarnwick::fuzz;

namespace {

void readTracks(std::string_view text) {
    try {
        const KeyframeTracks tracks = KeyframeTracks::decode(text);
        law(KeyframeTracks::decode(std::string_view(tracks.encode())) == tracks,
            "a written document reads back equal");
        for (const double time : {-1.0, 0.0, 0.5, 1e300, std::numeric_limits<double>::infinity()})
            tracks.values(time, {});
        tracks.fitted({});
    } catch (const DocumentError&) {
    }
}

void readSettings(std::string_view text) {
    try {
        const Settings settings = Settings::decode(text);
        law(Settings::decode(settings.encode()) == settings, "a written document reads back equal");
        decodeKeys(text);
        settings.misfits({}, "The episode");
    } catch (const DocumentError&) {
    }
}

void readBinding(std::string_view text) {
    try {
        const MIDIBinding binding = MIDIBinding::decode(text);
        law(binding.channel < 16 && binding.controller < 128, "a binding is in its ranges");
        law(MIDIBinding::decode(std::string_view(binding.encode())) == binding,
            "a written document reads back equal");
    } catch (const MIDIBindingError&) {
    }
}

void readAnswer(std::string_view text) {
    if (const auto start = LinkStart::decode(text, dateAt(0)))
        law(start->interval >= 1 && start->interval <= 60, "an interval is in its range");
    Approved::decode(text);
    Me::decode(text);
    Shared::decode(text);
    const ServiceError failure = ServiceError::of(500, text);
    const std::string_view words = failure.what();
    law(!words.empty() && words.find('\n') == std::string_view::npos, "an error has one line");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = textOf(bytes, size);
    readTracks(text);
    readBinding(text);
    readSettings(text);
    readAnswer(text);
    return 0;
}
