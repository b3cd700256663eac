// What arrives moves the document as a slider does.
#include "player/ControlPanel/BindingForm.h"
#include "player/ControlPanel/LiveControl.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <filesystem>
#include <unistd.h>

namespace tarnwick::player {
namespace {

class Live : public testing::Test {
  protected:
    Live() { document = player.add(Document("// @param red 0.25 0 1\n// @param blue 0 0 1\n")); }
    ~Live() override { std::filesystem::remove_all(file.parent_path()); }

    void turn(std::uint8_t controller, std::uint8_t value) {
        const std::array<std::uint8_t, 3> bytes{0xB0, controller, value};
        control.mail().post(*midiArrival(bytes));
    }
    float played(std::size_t param) const {
        return document->valueNow(document->document().episode()->params().at(param));
    }

    std::filesystem::path file =
        testing::TempDir() + "tarnwick-live-" + std::to_string(::getpid()) + "/control.json";
    Player player;
    OpenDocument* document;
    LiveControl control{player, file};
};

TEST_F(Live, bindsTheNextControlAndKeepsTheBinding) {
    control.learn(ParameterTarget{"red"}, true);
    turn(7, 10);
    ASSERT_TRUE(becomesTrue([&] { return !control.bindings().empty(); }));
    EXPECT_EQ(control.learning(), nullptr);
    EXPECT_EQ(control.bindings()[0].episode, "Untitled");
    turn(7, 127);
    EXPECT_TRUE(becomesTrue([&] { return played(0) == 1; }));
    EXPECT_TRUE(becomesTrue([&] { return readControlFile(file).settings.bindings.size() == 1; }));
}

TEST_F(Live, isOneChangeUntilAPause) {
    control.setBindings({{.source = MIDIControl{.number = 1}, .target = ParameterTarget{"red"}},
                         {.source = MIDIControl{.number = 2}, .target = ParameterTarget{"blue"}}});
    for (int step = 1; step <= 60; ++step) { // two knobs by turns
        turn(static_cast<std::uint8_t>(1 + step % 2), static_cast<std::uint8_t>(step));
        QTest::qWait(5);
    }
    ASSERT_TRUE(becomesTrue([&] { return played(0) == 60.0f / 127 && played(1) == 59.0f / 127; }));
    document->undoSettings();
    EXPECT_EQ(document->document().settings(), Settings{});
    EXPECT_FALSE(document->document().history().canUndo());
}

TEST_F(Live, holdsParametersWithKeysUntilTheyAreReleasedUnlessKeysAreWritten) {
    control.setBindings({{.source = MIDIControl{.number = 1}, .target = ParameterTarget{"red"}}});
    document->setTransport(document->transport().paused(0).sought(2, 0));
    Settings settings;
    settings.keys.set("red", 0, 0.5f);
    document->setSettings(settings, "Add key");
    turn(1, 127);
    ASSERT_TRUE(becomesTrue([&] { return played(0) == 1; }));
    EXPECT_EQ(document->document().settings(), settings);
    EXPECT_TRUE(document->playedSettings().keys.keys("red").empty());
    document->releaseHeld();
    EXPECT_EQ(played(0), 0.5f);
    control.setWritesKeys(true);
    turn(1, 0);
    ASSERT_TRUE(becomesTrue([&] { return played(0) == 0; }));
    EXPECT_EQ(document->document().settings().keys.keys("red").size(), 2u);
    document->undoSettings();
    EXPECT_EQ(document->document().settings(), settings);
}

TEST_F(Live, playsTheTransport) {
    const auto send = [&](const char* address, float number) {
        control.mail().post({.source = OSCControl{address}, .numbers = {number}, .from = {}});
    };
    send("/tarnwick/transport/pause", 1);
    ASSERT_TRUE(becomesTrue([&] { return !document->transport().isPlaying; }));
    send("/tarnwick/transport/time", 12.5f);
    send("/tarnwick/transport/speed", -2);
    EXPECT_TRUE(becomesTrue([&] { return document->time() == 12.5; }));
    EXPECT_TRUE(becomesTrue([&] { return document->transport().speed == -2; }));
    player.close(document);
    send("/tarnwick/transport/restart", 1);
    EXPECT_TRUE(becomesTrue([&] { return control.monitor().messages() == 4; }));
}

// Hidden fields do not count.
TEST(BindingForm, givesTheStepsOfAnEncoderToControllersOnly) {
    const Binding encoder{.source = MIDIControl{.channel = 3, .number = 20},
                          .target = SliderTarget{1},
                          .encoding = MIDIEncoding::signedBit,
                          .step = 0.02f};
    BindingForm form;
    form.show(encoder);
    EXPECT_EQ(form.binding(), encoder);
    auto* kind = form.findChild<QComboBox*>();
    kind->setCurrentIndex(kind->findText(QStringLiteral("NRPN")));
    EXPECT_EQ(form.binding(),
              (Binding{.source = MIDIControl{MIDIControl::Kind::nonRegistered, 3, 20},
                       .target = encoder.target}));
}

} // namespace
} // namespace tarnwick::player
