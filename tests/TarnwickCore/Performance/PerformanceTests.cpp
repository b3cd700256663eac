#include "TarnwickCore/Performance/FrameWalk.h"
#include "TarnwickCore/Performance/Performance.h"
#include "TarnwickCore/Performance/PerformanceCursor.h"
#include "TarnwickCore/Performance/SoundPieces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>

namespace tarnwick {
namespace {

using Change = Performance::Change;
using Value = Performance::Value;
using Pointer = Performance::Pointer;

std::shared_ptr<const LevelCodes> levels(std::uint64_t seed) {
    std::mt19937_64 random(seed);
    auto codes = std::make_shared<LevelCodes>();
    std::ranges::generate(codes->bands, [&] { return static_cast<std::uint16_t>(random()); });
    std::ranges::generate(codes->spectrum, [&] { return static_cast<std::uint8_t>(random()); });
    return codes;
}

// A performance with every kind of change, at times that no decimal fraction represents.
Performance wild(unsigned seed) {
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> share;
    Performance made{.episode = Performance::markOf("mine", "text")};
    made.start.inputs = {{"0", {"clip.mp4", 1200, "9f86"}},
                         {"audio", {"/music/song.flac", 3, "d081", true}}};
    made.start.settings.values = {{"speed", 0.1f}, {"hue", 1 / 3.0f}};
    made.start.settings.keys.set("glow", 1.1, 0.7f);
    made.start.transport = Transport{.time = 0.3, .since = -0.7}.played(-share(random));
    PerformedState state = made.start;
    for (int count = 0; count < 300; ++count) {
        const double time = made.length += count % 7 == 0 ? 0 : share(random) / 10;
        PerformedState next = state;
        next.settings.values["speed"] = static_cast<float>(share(random));
        if (count % 5 == 0)
            next.pointer = std::array{static_cast<float>(share(random)), 0.25f};
        if (count % 11 == 0)
            next.settings.keys.set("hue", share(random) * 9, static_cast<float>(share(random)));
        if (count % 13 == 0)
            next.settings.values.erase("hue");
        if (count % 17 == 0)
            next.settings.keys.clear("glow");
        if (count % 19 == 0)
            next.transport = next.transport.sought(share(random) * 4, time);
        if (count % 23 == 0)
            next.transport = next.transport.withSpeed(share(random) * 6 - 3, time);
        if (count % 29 == 0)
            next.transport =
                next.transport.withLoop(LoopRange{share(random), 1 + share(random)}, time);
        if (count % 31 == 0)
            next.inputs["3.0"] = {.file = "still.png", .bytes = random() % 1000};
        if (count % 37 == 0)
            next.inputs.erase("3.0");
        if (count % 3 == 0)
            next.heard.codes = levels(random());
        if (count % 41 == 0)
            next.heard = {};
        if (count % 43 == 0)
            next.inputs["audio"].isPlayed = !next.inputs["audio"].isPlayed;
        for (Performance::What& what : changesBetween(state, next))
            made.changes.push_back({time, std::move(what)});
        state = next;
    }
    made.length += 1.0 / 3;
    made.remarks = {"A camera was shown."};
    return made;
}

TEST(Performance, readsBackEqualToTheLastBit) {
    for (unsigned seed = 0; seed < 5; ++seed) {
        const Performance made = wild(seed);
        EXPECT_EQ(Performance::decode(made.encode()), made);
        EXPECT_EQ(Performance::decode(made.encode()).encode(), made.encode());
    }
}

// A recording that was killed: every beginning of its file is a beginning of the performance.
TEST(Performance, readsAnyBeginningOfItsFile) {
    const Performance made = wild(1);
    const std::string whole = made.encode();
    for (std::size_t size = whole.find('\n') + 1; size < whole.size(); size += 97) {
        const Performance part = Performance::decode(std::string_view(whole).substr(0, size));
        ASSERT_LE(part.changes.size(), made.changes.size());
        EXPECT_TRUE(
            std::ranges::equal(part.changes, std::span(made.changes).first(part.changes.size())));
        EXPECT_EQ(part.remarks.size(), 1u);
        EXPECT_EQ(part.length, part.changes.empty() ? 0 : part.changes.back().time);
    }
}

TEST(Performance, namesTheLineThatIsInvalid) {
    const std::string beginning = Performance{}.encodedBeginning();
    const std::vector<std::pair<std::string, std::string>> rows{
        {"[1,\"value\",\"a\",]\n", "Line 2, column 16 is not JSON"},
        {"[2,\"value\",\"a\",1]\n[1,\"value\",\"a\",1]\n", "Line 3 is at 1 s, before the change"},
        {"[1,\"tilt\",2]\n", "Line 2 has a change of the unknown kind \"tilt\"."},
        {"[1,\"value\",\"a\",\"b\"]\n", "Line 2: the value is not a number."},
        {"[1,\"clock\",[0,0,1,true,2,1]]\n", "Line 2 has a loop that does not end"},
        {"[90000,\"mouse\",null]\n", "Line 2 has the time 90000 s; it must be at most 86400 s."},
        {"[1,\"clock\",[1e300,0,1,true]]\n", "Line 2 has the time 1e+300 s"},
        {"[\"1\",\"mouse\",null]\n", "Line 2 has \"1\" where a number is required."},
        {"[1,\"input\",{\"input\":\"4\"}]\n", "Line 2 has the input \"4\"; it must be audio, or"},
        {"[1,\"input\",{\"input\":\"0\",\"file\":\"a\"}]\n", "Line 2 has no \"bytes\""},
        {"[1,\"levels\",\"AAAA\"]\n", "Line 2 has levels that are not 352 letters of Base64."},
    };
    for (const auto& [lines, expected] : rows)
        try {
            Performance::decode(beginning + lines);
            ADD_FAILURE() << lines;
        } catch (const DocumentError& error) {
            EXPECT_TRUE(std::string(error.what()).starts_with(expected)) << error.what();
        }
    EXPECT_THROW(Performance::decode(Settings{}.encode()), DocumentError);
    EXPECT_THROW(Performance::decode(""), DocumentError);
}

// For the list of many files, also of one that is recorded now.
TEST(Performance, isSummedUpByItsEnds) {
    const Performance made = wild(3);
    const std::string whole = made.encode();
    EXPECT_EQ(Performance::summary(whole).title, "mine");
    EXPECT_EQ(Performance::summary(whole).length, made.length);
    const std::string_view cut = std::string_view(whole).substr(0, whole.size() / 2);
    EXPECT_EQ(Performance::summary(cut).length, Performance::decode(cut).length);
    EXPECT_EQ(Performance::summary(made.encodedBeginning()).length, 0);
    EXPECT_THROW(Performance::summary("mine\n"), DocumentError);
    EXPECT_THROW(Performance::summary(made.encodedBeginning() + "no\n"), DocumentError);
}

TEST(PerformanceCursor, hasTheStateOfATimeHoweverItCameThere) {
    const auto made = std::make_shared<const Performance>(wild(2));
    PerformanceCursor forward(made), jumping(made);
    std::mt19937 random(3);
    for (int count = 0; count < 200; ++count) {
        const double time = made->length * std::uniform_real_distribution<double>()(random);
        PerformedState folded = made->start;
        for (const Change& change : made->changes)
            if (change.time <= time)
                apply(change.what, folded);
        EXPECT_EQ(jumping.at(time), folded);
    }
    EXPECT_EQ(forward.at(-1), made->start);
}

TEST(Timeline, isAskedInTheSameWayWhateverItIs) {
    const auto made = std::make_shared<const Performance>(wild(4));
    const Timeline performed(made);
    EXPECT_EQ(performed.performed(), made);
    for (const double time : {0.0, 0.3, 0.7, made->length}) {
        const PerformedState state = PerformanceCursor(made).at(time);
        const TimelineMoment moment = performed.at(time);
        EXPECT_EQ(moment.time, state.transport.timeAt(time));
        EXPECT_EQ(moment.values, state.settings.valuesAt(moment.time));
        EXPECT_EQ(moment.pointer, state.pointer);
    }
    Settings keyed{.values = {{"speed", 2.0f}}};
    keyed.keys.set("far", 1, 3);
    const Timeline settings(keyed), played(settings.performed());
    for (const double time : {0.0, 0.5, 2.25}) {
        EXPECT_EQ(settings.at(time).time, time);
        EXPECT_EQ(settings.at(time).values, keyed.valuesAt(time));
        EXPECT_EQ(played.at(time).time, time);
        EXPECT_EQ(played.at(time).values, keyed.valuesAt(time));
    }
    TimelineSound still(settings), moving(played);
    EXPECT_EQ(still.pieces(0.5, 100, 48000), moving.pieces(0.5, 100, 48000));
}

// Draws the walk as a simulation does: the frames that were computed, each with its controls.
struct Computed {
    using Other = std::tuple<PointerPlace, PerformedInputs, const LevelCodes*>;
    std::vector<std::pair<float, Other>> frames;

    void add(const FramePassage& passage) {
        const auto of = [](const FrameControls& controls) {
            return std::pair(controls.settings->values.at("speed"),
                             Other(controls.pointer, *controls.inputs, controls.heard.codes.get()));
        };
        if (!passage.from)
            frames.clear();
        else
            ASSERT_EQ(frames.size(), static_cast<std::size_t>(*passage.from) + 1);
        if (passage.from)
            frames.back() = of(passage.left);
        frames.resize(static_cast<std::size_t>(passage.to) + 1, of(passage.reached));
    }
};

// The frames of a movie may be drawn at any rate, from any time on: the state is the same.
TEST(FrameWalk, comesToTheSameFramesAtEveryRate) {
    for (unsigned seed = 0; seed < 8; ++seed) {
        const auto made = std::make_shared<const Performance>(wild(seed));
        FrameWalk fine(made), coarse(made);
        Computed finely, coarsely;
        for (int frame = 0; frame / 240.0 < made->length; ++frame) {
            for (const FramePassage& passage : fine.advance(frame / 240.0))
                finely.add(passage);
            if (frame % 80 != 0)
                continue;
            for (const FramePassage& passage : coarse.advance(frame / 240.0))
                coarsely.add(passage);
            ASSERT_EQ(finely.frames, coarsely.frames) << seed << " " << frame;
            FrameWalk fresh(made);
            Computed alone;
            for (const FramePassage& passage : fresh.advance(frame / 240.0))
                alone.add(passage);
            ASSERT_EQ(alone.frames, finely.frames) << seed << " " << frame;
        }
    }
}

TEST(FrameWalk, givesAFrameTheControlsOfItsMoment) {
    Performance made;
    made.start.settings.values["speed"] = 1;
    made.start.transport = Transport{}.played(0);
    const Transport paused = made.start.transport.paused(0.5);
    made.changes = {{0.25, Value{"speed", 2.0f}},
                    {0.5, paused},
                    {0.75, Value{"speed", 3.0f}},
                    {1, paused.sought(1, 1)},
                    {1.25, paused.sought(0.1, 1.25)}};
    made.length = 2;
    FrameWalk walk(std::make_shared<const Performance>(made));
    Computed computed;
    const auto to = [&](double time) {
        for (const FramePassage& passage : walk.advance(time))
            computed.add(passage);
    };
    to(0.9);
    ASSERT_EQ(computed.frames.size(), 31u);
    EXPECT_EQ(computed.frames[14].first, 1); // left before the change
    EXPECT_EQ(computed.frames[15].first, 2); // reached before it, left after it
    to(1.2);
    ASSERT_EQ(computed.frames.size(), 61u);
    EXPECT_EQ(computed.frames[30].first, 3); // changed while it was shown, and then left
    EXPECT_EQ(computed.frames[31].first, 3);
    to(1.3);
    ASSERT_EQ(computed.frames.size(), 7u);
    EXPECT_EQ(computed.frames[0].first, 3);
}

// One sample after another against the clock itself.
TEST(SoundPieces, giveEachSampleTheClockOfItsTime) {
    constexpr std::int64_t rate = 4800;
    for (unsigned seed = 0; seed < 5; ++seed) {
        const auto made = std::make_shared<const Performance>(wild(seed));
        PerformanceCursor cursor(made), other(made);
        const auto count = static_cast<std::int64_t>(made->length * rate);
        std::int64_t sample = 0;
        for (const SoundPiece& piece : soundPieces(cursor, 0, count, rate)) {
            ASSERT_GT(piece.count, 0);
            for (std::int64_t at = 0; at < piece.count; ++at, ++sample) {
                const double time = static_cast<double>(sample) / rate;
                const PerformedState& state = other.at(time);
                const double clock = state.transport.timeAt(time);
                if (piece.isSilent) {
                    EXPECT_TRUE(!state.transport.isPlaying || clock <= 0);
                    continue;
                }
                ASSERT_EQ(piece.values, state.settings.values);
                ASSERT_EQ(piece.file, state.inputs.at("audio").file);
                ASSERT_EQ(piece.isFilePlayed, state.inputs.at("audio").isPlayed);
                ASSERT_NEAR(piece.start + static_cast<double>(at) / rate * piece.speed, clock,
                            1e-9);
            }
        }
        EXPECT_EQ(sample, count);
    }
}

} // namespace
} // namespace tarnwick
