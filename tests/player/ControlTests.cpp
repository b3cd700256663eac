// OSC, MIDI and bindings without a window.
#include "player/Control/ControlMail.h"
#include "player/Control/ControlMonitor.h"
#include "player/Control/ControlRouter.h"
#include "player/Control/ControlSettings.h"
#include "player/Control/Learner.h"
#include "player/Control/MIDIDecoder.h"
#include "player/Control/OSCPeer.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace tarnwick::player {
namespace {

namespace fs = std::filesystem;

const std::vector<ParamDecl> params{{"speed", 1, 0, 4, ""}, {"red", 0.25f, 0, 1, ""}};

ControlArrival midi(std::initializer_list<std::uint8_t> bytes) {
    const auto arrival = midiArrival(std::vector<std::uint8_t>(bytes));
    EXPECT_TRUE(arrival);
    return arrival.value_or(ControlArrival{});
}
ControlArrival osc(std::string address, std::vector<float> numbers) {
    return {.source = OSCControl{std::move(address)}, .numbers = std::move(numbers), .from = {}};
}
PlayedEpisode episode(std::string title = "Rose", float speed = 1) {
    return {.title = std::move(title), .params = params, .values = {{"speed", speed}}};
}
constexpr MIDIControl knob{MIDIControl::Kind::controller, 0, 74};
constexpr MIDIControl pad{MIDIControl::Kind::note, 9, 36};

// What the moves are for a person: "speed 2".
std::string moved(ControlRouter& router, const ControlArrival& arrival,
                  const PlayedEpisode& played = episode()) {
    const auto moves = router.route(arrival, played);
    return targetText(moves) + " " + valueText(moves);
}

TEST(ControlSource, readsChannelVoiceMessagesOfMIDI) {
    struct Row {
        std::vector<std::uint8_t> bytes;
        std::string label; // empty: ignored
        float position = 0;
    };
    const std::vector<Row> rows{
        {{0xB0, 74, 127}, "CC 74 · ch 1", 1},
        {{0x9F, 60, 0}, "Note 60 · ch 16", 0},
        {{0x82, 60, 64}, "Note 60 · ch 3", 0},
        {{0xC0, 4}, "Program 5 · ch 1", 1},
        {{0xD1, 127}, "Pressure · ch 2", 1},
        {{0xE0, 127, 127}, "Pitch bend · ch 1", 1},
        {{0xB0, 123, 0}, ""},
        {{0xF8}, ""},
        {{0x90, 60}, ""},
        {{0x90, 60, 200}, ""},
        {{60, 60, 60}, ""},
        {{}, ""},
    };
    for (const Row& row : rows) {
        const auto arrival = midiArrival(row.bytes);
        ASSERT_EQ(arrival.has_value(), !row.label.empty()) << row.bytes.size();
        if (!arrival)
            continue;
        EXPECT_EQ(labelOf(arrival->source), row.label);
        EXPECT_EQ(arrival->numbers, std::vector{row.position}) << row.label;
    }
}

// What a port sends, one message after the other, a millisecond apart.
std::vector<ControlArrival> decoded(std::vector<std::array<std::uint8_t, 3>> messages) {
    MIDIDecoder decoder;
    std::vector<ControlArrival> all;
    double time = 100;
    for (const auto& message : messages)
        for (ControlArrival& arrival : decoder.read(message, time += 0.001)) {
            arrival.time = time;
            all.push_back(std::move(arrival));
        }
    return all;
}
std::string texts(const std::vector<ControlArrival>& arrivals) {
    std::string all;
    for (const ControlArrival& arrival : arrivals)
        if (std::get<MIDIControl>(arrival.source).kind != MIDIControl::Kind::controller)
            all += messageText(arrival) + "; ";
    return all;
}

TEST(MIDIDecoder, composesControllersOf14Bits) {
    // The lower bits follow; then the upper ones alone, which set the lower ones to 0; then fine
    // steps; then upper bits that are repeated before each change.
    EXPECT_EQ(texts(decoded({{0xB0, 7, 127},
                             {0xB0, 39, 127},
                             {0xB0, 7, 64},
                             {0xB0, 39, 1},
                             {0xB0, 7, 64},
                             {0xB0, 39, 2}})),
              "CC 7+39 · ch 1: 1; CC 7+39 · ch 1: 0.5; CC 7+39 · ch 1: 0.5001; "
              "CC 7+39 · ch 1: 0.5002; ");
    EXPECT_EQ(texts(decoded({{0xB0, 39, 5}, {0xB1, 7, 5}, {0xB0, 39, 6}})), "")
        << "two knobs of 7 bits";
    MIDIDecoder slow;
    slow.read(std::array<std::uint8_t, 3>{0xB0, 7, 9}, 1);
    EXPECT_EQ(slow.read(std::array<std::uint8_t, 3>{0xB0, 39, 9}, 2).size(), 1u);
}

TEST(MIDIDecoder, readsParameterNumbers) {
    EXPECT_EQ(texts(decoded({{0xB2, 99, 1}, {0xB2, 98, 2}, {0xB2, 6, 127}})),
              "NRPN 130 · ch 3: 1; ");
    EXPECT_EQ(texts(decoded({{0xB0, 101, 0},
                             {0xB0, 100, 1},
                             {0xB0, 6, 64},
                             {0xB0, 38, 0},
                             {0xB0, 96, 0},
                             {0xB0, 97, 0},
                             {0xB0, 101, 127},
                             {0xB0, 100, 127},
                             {0xB0, 6, 3}})),
              "RPN 1 · ch 1: 0.5039; CC 6+38 · ch 1: 0.5; RPN 1 · ch 1: 0.5; "
              "RPN 1 · ch 1: 0.5001; RPN 1 · ch 1: 0.5; CC 6+38 · ch 1: 0.02344; ");
    EXPECT_EQ(texts(decoded({{0xB0, 6, 64}, {0xB0, 98, 4}, {0xB0, 6, 64}})), "")
        << "no parameter is chosen";
}

TEST(Learner, knowsInWhichWayAControlCounts) {
    struct Row {
        std::vector<std::array<std::uint8_t, 3>> messages;
        std::string label;
        MIDIEncoding encoding = MIDIEncoding::absolute;
    };
    const auto turns = [](std::initializer_list<std::uint8_t> values) {
        std::vector<std::array<std::uint8_t, 3>> messages;
        for (const std::uint8_t value : values)
            messages.push_back({0xB0, 74, value});
        return messages;
    };
    using enum MIDIEncoding;
    const std::vector<Row> rows{
        {turns({1, 2, 3, 4}), "CC 74 · ch 1"},
        {turns({64}), "CC 74 · ch 1"},
        {turns({1, 1, 2, 127, 127}), "CC 74 · ch 1", twosComplement},
        {turns({1, 1, 65, 66}), "CC 74 · ch 1", signedBit},
        {turns({65, 65, 63}), "CC 74 · ch 1", binaryOffset},
        {{{0xB0, 7, 3}, {0xB0, 39, 8}}, "CC 7+39 · ch 1"},
        {{{0xB0, 99, 0}, {0xB0, 98, 9}, {0xB0, 6, 3}, {0xB0, 38, 3}}, "NRPN 9 · ch 1"},
    };
    for (const Row& row : rows) {
        Learner learner(ParameterTarget{"speed"}, "");
        ControlMail mail([] {}); // as they arrive, several in a frame
        for (const ControlArrival& arrival : decoded(row.messages))
            mail.post(arrival);
        for (const ControlArrival& arrival : mail.take())
            learner.add(arrival);
        EXPECT_FALSE(learner.learned(100.1)) << row.label;
        const auto learned = learner.learned(101);
        ASSERT_TRUE(learned) << row.label;
        EXPECT_EQ(labelOf(learned->source), row.label);
        EXPECT_EQ(learned->encoding, row.encoding) << row.label;
    }
    Learner learner(TransportAction::toggle, "");
    learner.add(midi({0x90, 60, 90}));
    EXPECT_TRUE(learner.learned(0)) << "a key is known at once";
}

TEST(ControlRouter, stepsWithEncoders) {
    ControlRouter router;
    router.setPickup(true);
    Binding binding{.source = knob,
                    .target = ParameterTarget{"speed"},
                    .output = {0, 0.5f},
                    .encoding = MIDIEncoding::twosComplement,
                    .step = 0.01f};
    router.setBindings({binding});
    EXPECT_EQ(moved(router, midi({0xB0, 74, 3})), "speed 1.12");
    EXPECT_EQ(moved(router, midi({0xB0, 74, 127})), "speed 0.96");
    EXPECT_EQ(moved(router, midi({0xB0, 74, 63})), "speed 2") << "the end of the binding";
    EXPECT_EQ(moved(router, midi({0xB0, 74, 0})), "— ");
    ControlArrival several = midi({0xB0, 74, 1});
    several.values = {1, 1, 126, 1};
    EXPECT_EQ(moved(router, several), "speed 1.04");
    binding.output = {1, 0};
    binding.encoding = MIDIEncoding::signedBit;
    router.setBindings({binding});
    EXPECT_EQ(moved(router, midi({0xB0, 74, 66})), "speed 1.08") << "turned round";
    binding.encoding = MIDIEncoding::binaryOffset;
    binding.target = TransportAction::stepForward;
    router.setBindings({binding});
    EXPECT_EQ(moved(router, midi({0xB0, 74, 62})), "Step back 2");
}

TEST(ControlRouter, movesParametersAndTransportByTheirOSCAddresses) {
    ControlRouter router;
    EXPECT_EQ(moved(router, osc("/tarnwick/speed", {0.5f})), "speed 2");
    EXPECT_EQ(moved(router, osc("/tarnwick/speed/value", {9})), "speed 4");
    EXPECT_EQ(moved(router, osc("/tarnwick/transport/restart", {})), "Restart ");
    EXPECT_EQ(moved(router, osc("/tarnwick/transport/restart", {1})), "Restart ");
    EXPECT_EQ(moved(router, osc("/tarnwick/transport/restart", {0})), "— ");
    EXPECT_EQ(moved(router, osc("/tarnwick/transport/time", {7.5f})), "Time 7.5");
    EXPECT_EQ(moved(router, osc("/tarnwick/transport/step", {-3})), "Step back 3");
    for (const char* address : {"/tarnwick/transport/time", "/tarnwick/none", "/other", "/"})
        EXPECT_EQ(moved(router, osc(address, {NAN})), "— ") << address;
}

TEST(ControlRouter, mapsThroughTheRangeAndTheCurveOfABinding) {
    Binding binding{.source = knob, .target = ParameterTarget{"speed"}};
    ControlRouter router;
    const auto at = [&](std::uint8_t value) {
        router.setBindings({binding});
        return moved(router, midi({0xB0, 74, value}));
    };
    EXPECT_EQ(at(0), "speed 0");
    EXPECT_EQ(at(127), "speed 4");
    binding.output = {0.75f, 0.25f};
    EXPECT_EQ(at(0), "speed 3");
    EXPECT_EQ(at(127), "speed 1");
    binding.output = {0, 1};
    for (const CaseName<ControlCurve>& curve : curveNames()) { // each is monotone, end to end
        binding.curve = curve.one;
        EXPECT_EQ(at(0), "speed 0") << curve.word;
        EXPECT_EQ(at(127), "speed 4") << curve.word;
        for (float last = 0, next = 0, step = 0; step <= 1; step += 0.01f, last = next) {
            next = outputPosition(binding, step);
            EXPECT_GE(next, last) << curve.word;
        }
    }
    binding = {.source = OSCControl{"/xy", 1}, .target = SliderTarget{2}, .input = {-1, 1}};
    router.setBindings({binding});
    EXPECT_EQ(moved(router, osc("/xy", {5, 0})), "red 0.5");
    EXPECT_EQ(moved(router, osc("/xy", {5})), "— ");
    EXPECT_EQ(moved(router, osc("/xy", {5, INFINITY})), "— ");
}

TEST(ControlRouter, prefersTheBindingsOfTheEpisode) {
    ControlRouter router;
    router.setBindings({{.source = knob, .target = ParameterTarget{"speed"}},
                        {.source = knob, .target = ParameterTarget{"red"}, .episode = "Rose"}});
    EXPECT_EQ(moved(router, midi({0xB0, 74, 127})), "red 1");
    EXPECT_EQ(moved(router, midi({0xB0, 74, 127}), episode("Other")), "speed 4");
}

TEST(ControlRouter, togglesWithEachPressAndStartsWithOne) {
    ControlRouter router;
    router.setBindings({{.source = pad,
                         .target = ParameterTarget{"speed"},
                         .output = {0.25f, 1},
                         .button = ButtonMode::toggle},
                        {.source = pad, .target = TransportAction::restart}});
    EXPECT_EQ(moved(router, midi({0x99, 36, 100})), "speed, Restart 4");
    EXPECT_EQ(moved(router, midi({0x99, 36, 90})), "— ") << "not released yet";
    EXPECT_EQ(moved(router, midi({0x89, 36, 0})), "— ");
    EXPECT_EQ(moved(router, midi({0x99, 36, 100}), episode("Rose", 4)), "speed, Restart 1");
}

TEST(ControlRouter, waitsUntilAKnobReachesTheValue) {
    ControlRouter router;
    router.setBindings({{.source = knob, .target = ParameterTarget{"speed"}}});
    router.setPickup(true);
    const auto waits = [&](std::uint8_t value, float speed) {
        return router.route(midi({0xB0, 74, value}), episode("Rose", speed)).at(0).waitsForPickup;
    };
    EXPECT_TRUE(waits(100, 1)); // 1 is at 31.75
    EXPECT_TRUE(waits(40, 1));
    EXPECT_FALSE(waits(20, 1)) << "it passed the value";
    EXPECT_FALSE(waits(90, 4.0f * 20 / 127)) << "it holds the value";
    EXPECT_TRUE(waits(80, 0)) << "a slider moved away";
    router.setBindings({{.source = knob, .target = ParameterTarget{"speed"}, .hasPickup = false}});
    EXPECT_FALSE(waits(10, 3)) << "a choice of the binding alone";
}

TEST(Binding, isLearnedFromTheNextControl) {
    std::vector<Binding> bindings;
    const auto learn = [&](const ControlArrival& arrival) {
        auto learned = learnedFrom(arrival, ParameterTarget{"speed"}, "");
        if (learned)
            addLearned(bindings, *learned);
        return learned.has_value();
    };
    EXPECT_FALSE(learn(midi({0x89, 36, 0}))) << "a key that is released";
    EXPECT_TRUE(learn(midi({0x99, 36, 1})));
    EXPECT_TRUE(learn(osc("/fader", {64})));
    EXPECT_EQ(bindings.at(1).input[1], 127.0f);
    EXPECT_TRUE(learn(midi({0xB0, 74, 0})));
    ASSERT_EQ(bindings.size(), 2u) << "a knob replaces a key, and not an address";
    EXPECT_EQ(bindings[0].source, ControlSource(OSCControl{"/fader"}));
    EXPECT_EQ(bindings[1].source, ControlSource(knob));
}

TEST(ControlMail, keepsTheNewestOfEachControlAndLosesNoPress) {
    int wakes = 0;
    ControlMail mail([&] { ++wakes; });
    for (int count = 0; count < 1000; ++count)
        mail.post(osc("/a", {static_cast<float>(count + 1)}));
    mail.post(midi({0x99, 36, 127}));
    mail.post(midi({0x89, 36, 0}));
    const auto first = mail.take();
    ASSERT_EQ(first.size(), 2u);
    EXPECT_EQ(first[0].numbers, std::vector{1000.0f});
    EXPECT_EQ(first[0].count, 1000);
    EXPECT_EQ(first[1].numbers, std::vector{1.0f});
    EXPECT_EQ(wakes, 1);
    const auto second = mail.take();
    ASSERT_EQ(second.size(), 1u);
    EXPECT_EQ(second[0].numbers, std::vector{0.0f});
    EXPECT_TRUE(mail.isEmpty());
    for (std::size_t count = 0; count < ControlMail::mostControls + 5; ++count)
        mail.post(osc("/" + std::to_string(count), {1}));
    EXPECT_EQ(mail.dropped(), 5u);
    EXPECT_EQ(mail.take().size(), ControlMail::mostControls);
}

TEST(ControlMonitor, isBoundedAndPauses) {
    ControlMonitor monitor;
    for (std::size_t count = 0; count < ControlMonitor::mostRows + 5; ++count)
        monitor.add({osc("/" + std::to_string(count), {}), {}});
    EXPECT_EQ(monitor.rows().size(), ControlMonitor::mostRows);
    EXPECT_EQ(labelOf(monitor.rows().front().arrival.source), "/5");
    monitor.setPaused(true);
    monitor.add({osc("/x", {}), {}});
    EXPECT_NE(labelOf(monitor.rows().back().arrival.source), "/x");
    EXPECT_EQ(monitor.messages(), ControlMonitor::mostRows + 6);
}

TEST(OSCPeer, isToldEachChangeOnceAndNotItsOwn) {
    OSCPeer peer;
    ParamValues values{{"speed", 2}, {"red", 0}};
    EXPECT_EQ(peer.changes(params, values, 10),
              (std::vector<OSC::Message>{{"/tarnwick/speed", {0.5f}}, {"/tarnwick/red", {0}}}));
    EXPECT_TRUE(peer.changes(params, values, 10).empty());
    EXPECT_TRUE(peer.isEcho("speed", 0.500001f, 10.2));
    EXPECT_FALSE(peer.isEcho("speed", 0.5f, 11));
    EXPECT_FALSE(peer.isEcho("speed", 0.4f, 10.2));
    values["speed"] = 3;
    peer.knows("speed", 0.75f);
    EXPECT_TRUE(peer.changes(params, values, 10.3).empty());
}

// A file of settings in a folder of its own.
class SettingsFile : public testing::Test {
  protected:
    void write(std::string_view bytes) const {
        fs::create_directories(file.parent_path());
        std::ofstream(file) << bytes;
    }
    static std::string bytesOf(const fs::path& one) {
        std::ifstream stream(one);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    ~SettingsFile() override { fs::remove_all(folder); }

    fs::path folder = testing::TempDir() + "tarnwick-control-" + std::to_string(::getpid());
    fs::path file = folder / "deeper" / "control.json";
};

TEST_F(SettingsFile, givesWhatWasWritten) {
    ControlSettings settings;
    for (const CaseName<MIDIControl::Kind>& kind : kindNames())
        settings.bindings.push_back({.source = MIDIControl{kind.one, 15, mostNumber(kind.one)},
                                     .target = SliderTarget{3},
                                     .button = ButtonMode::toggle});
    settings.bindings.push_back({.source = OSCControl{"/tête", 2},
                                 .target = ParameterTarget{"speed"},
                                 .episode = "Rose \"x\"",
                                 .input = {-1, 1023},
                                 .output = {0.9f, 0.1f},
                                 .curve = ControlCurve::smooth});
    settings.bindings.push_back({.source = knob,
                                 .target = ParameterTarget{"speed"},
                                 .encoding = MIDIEncoding::binaryOffset,
                                 .step = 0.25f,
                                 .hasPickup = false});
    for (const CaseName<TransportAction>& action : transportNames())
        settings.bindings.push_back({.source = OSCControl{"/a"}, .target = action.one});
    settings.input = {true, 7000, "10.0.0.4"};
    settings.output = {true, "tablet.local", 7001};
    settings.midi = {true, {"Keys:Keys MIDI 1"}};
    EXPECT_EQ(readControlFile(file).settings, ControlSettings{});
    writeControlFile(file, settings);
    const ControlFile read = readControlFile(file);
    EXPECT_EQ(read.settings, settings);
    EXPECT_EQ(read.remark, "");
    writeControlFile(file, {});
    EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), {}), 1);
}

TEST_F(SettingsFile, usesTheValidPartsOfADamagedOneAndKeepsIt) {
    const std::string damaged = R"({"bindings": [
        {"midi": {"channel": 0, "controller": 74}, "parameter": "speed"},
        {"midi": {"channel": 99, "controller": 74}, "parameter": "red"},
        {"midi": {"kind": "controller14", "channel": 0, "number": 32}, "parameter": "red"},
        {"midi": {"channel": 0, "controller": 74}, "parameter": "red", "step": 0},
        {"osc": {"address": "no slash"}, "parameter": "red"}, 7,
        {"osc": {"address": "/a"}, "transport": "explode"}],
        "oscInput": {"on": true, "port": 70000}})";
    write(damaged);
    const ControlFile read = readControlFile(file);
    ASSERT_EQ(read.settings.bindings.size(), 1u);
    EXPECT_EQ(read.settings.bindings[0],
              (Binding{.source = knob, .target = ParameterTarget{"speed"}}));
    EXPECT_FALSE(read.settings.input.isOn);
    EXPECT_EQ(read.remark, file.string() + " is damaged; 1 of its bindings are used, and the file "
                                           "is kept.");
    EXPECT_EQ(bytesOf(file), damaged);
    writeControlFile(file, read.settings);
    EXPECT_EQ(bytesOf(file.string() + ".damaged"), damaged);
    write("[");
    writeControlFile(file, read.settings);
    EXPECT_EQ(bytesOf(file.string() + ".damaged-2"), "[");
    EXPECT_EQ(readControlFile(file).settings, read.settings);
}

TEST_F(SettingsFile, saysWhyItCannotBeWritten) {
    std::ofstream(folder) << "a file in place of the folder";
    EXPECT_THROW(writeControlFile(file, {}), ControlFileError);
}

} // namespace
} // namespace tarnwick::player
