// Performances: documents of lines, whole and cut off, and the frames and the sound of their clock.
#include "TarnwickCore/Performance/FrameWalk.h"
#include "TarnwickCore/Performance/SoundPieces.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"

#include <cmath>

using namespace tarnwick;
using namespace tarnwick::fuzz;

namespace {

constexpr std::string_view beginning =
    R"({"kind":"performance","version":1,"episode":{"title":"e","sha256":""},)"
    R"("settings":{"name":"","values":{},"keys":{"tracks":{}}},"clock":[0,0,1,true],"mouse":null})"
    "\n";

void play(const Performance& performance) {
    const auto shared = std::make_shared<const Performance>(performance);
    FrameWalk walk(shared);
    PerformanceCursor cursor(shared);
    for (const double share : {0.0, 0.3, 1.0, 0.6}) {
        const double time = share * performance.length;
        for (const FramePassage& passage : walk.advance(time))
            law(passage.to >= passage.from.value_or(0), "a passage goes forwards");
        law(walk.state() == cursor.at(time), "frames and sound have one state");
        const double shown = cursor.state().transport.timeAt(time);
        law(std::isfinite(shown) && shown >= 0, "the episode's time is a time");
        std::int64_t count = 0;
        for (const SoundPiece& piece : soundPieces(cursor, std::llround(time * 48000), 800, 48000))
            count += piece.count;
        law(count == 800, "the pieces are the whole sound");
    }
}

void read(const std::string& text) {
    try {
        const Performance performance = Performance::decode(text);
        const std::string written = performance.encode();
        law(Performance::decode(written) == performance, "a written document reads back equal");
        const std::size_t first = written.find('\n') + 1;
        Performance::decode(written.substr(0, first + (written.size() - first) / 2));
        law(performance.fitted({}).start.settings.values.empty(), "no parameter is declared");
        performance.misfits({}, "The episode");
        play(performance);
    } catch (const DocumentError&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text(textOf(bytes, size));
    read(text);
    read(std::string(beginning) + text);
    return 0;
}
