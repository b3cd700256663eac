// The program on a virtual display: what it shows, and how it ends.
#include "TarnwickPlatform/Pictures/PNG.h"
#include "TarnwickPlatform/Text/Text.h"
#include "saver/Geometry.h"
#include "tests/Waiting.h"
#include "tests/saver/ProgramRun.h"
#include "tests/saver/TestBundle.h"
#include "tests/saver/VirtualDisplay.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <thread>

namespace tarnwick {
namespace {

#define SHADE "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) "

// Blue, with a corner at the upper right that tells the size of the drawable, and green as time
// goes.
constexpr const char* episode =
    SHADE "{ if (uv.x > 0.9 && uv.y > 0.9) return float4(u.resolution / 1000.0, 0.0, 1.0);"
          "  return float4(0.0, fract(u.time), 1.0, 1.0); }";

class Host : public testing::Test {
  protected:
    VirtualDisplay display;

    std::map<std::string, std::string> environment() const { return {{"DISPLAY", display.name()}}; }

    bool showsBlue(unsigned long window) {
        return eventually([&] { return display.pixel(window, 4, 4)[2] == 255; });
    }

    // Whether the episode's corner, seen in the window, tells the window's own size.
    bool fills(unsigned long window) {
        return eventually([&] {
            const PixelSize size = display.windowSize(window);
            const auto corner = display.pixel(window, static_cast<int>(size.width) - 2, 2);
            return std::abs(corner[0] - size.width * 0.255) < 1.5 &&
                   std::abs(corner[1] - size.height * 0.255) < 1.5;
        });
    }

    // Green runs through 0 to 255 in a second: counts the changes seen in `seconds`.
    int changesIn(unsigned long window, double seconds) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
        int changes = 0, last = -1;
        while (std::chrono::steady_clock::now() < end) {
            const int now = display.pixel(window, 4, 4)[1];
            changes += now != last;
            last = now;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return changes;
    }

    bool changes(unsigned long window) {
        const int before = display.pixel(window, 4, 4)[1];
        return eventually([&] { return display.pixel(window, 4, 4)[1] != before; });
    }

    void expectFailureScreen(unsigned long window, const std::string& message, double points) {
        Picture expected = blackPicture(display.windowSize(window));
        drawCenteredText(expected, message, points,
                         {40, expected.height / 2.0 - 40, expected.width - 80.0, 80});
        EXPECT_TRUE(eventually([&] {
            const Picture shown = display.picture(window);
            // The fourth byte is nobody's.
            for (std::size_t at = 0; at < expected.bytes.size(); ++at)
                if (at % 4 != 3 && shown.bytes.at(at) != expected.bytes[at])
                    return false;
            return true;
        })) << message;
    }
};

TEST_F(Host, showsARunningEpisodeInItsOwnWindow) {
    const TestBundle files(episode, R"({"name": "Evening", "values": {}, "keys": {"tracks": {}}})");
    ProgramRun run({"--bundle", files.folder(), "--size", "300x200"}, environment());
    const auto window = display.waitForWindow();
    ASSERT_TRUE(window) << run.said();
    ASSERT_TRUE(showsBlue(*window)) << run.said();
    EXPECT_TRUE(fills(*window));
    EXPECT_TRUE(eventually([&] { return display.windowTitle(*window) == "Evening"; }));
    EXPECT_LE(changesIn(*window, 2), 63); // 30 a second
    EXPECT_TRUE(changes(*window));
    display.resizeWindow(*window, {420, 333});
    EXPECT_TRUE(fills(*window));
    display.resizeWindow(*window, {97, 51});
    EXPECT_TRUE(fills(*window));
    run.signal(SIGTERM);
    EXPECT_EQ(run.waitForEnd(), 0) << run.said();
    EXPECT_EQ(run.said(), "");
}

TEST_F(Host, drawsHalfTheFramesInThePreview) {
    const TestBundle files(episode);
    ProgramRun run({"--bundle", files.folder(), "--preview"}, environment());
    const auto window = display.waitForWindow();
    ASSERT_TRUE(window) << run.said();
    ASSERT_TRUE(showsBlue(*window)) << run.said();
    EXPECT_LE(changesIn(*window, 2), 33);
    EXPECT_TRUE(changes(*window));
    run.signal(SIGINT);
    EXPECT_EQ(run.waitForEnd(), 0);
}

TEST_F(Host, drawsWithTheSettingsValuesAndKeys) {
    const TestBundle files(
        "// @param red 0 0 1\n// @param green 0 0 1\n// @param blue 0.2 0 1\n" SHADE
        "{ return float4(p.red, p.green, p.blue, 1.0); }",
        R"({"name": "", "values": {"red": 0.6}, "keys": {"tracks": {"green": [
                               {"time": 0, "value": 0.8, "ease": "hold"}]}}})");
    ProgramRun run({"--bundle", files.folder(), "--size", "64x64"}, environment());
    const auto window = display.waitForWindow();
    ASSERT_TRUE(window);
    EXPECT_TRUE(eventually([&] {
        return display.pixel(*window, 32, 32) == std::array{153, 204, 51};
    })) << run.said();
}

TEST_F(Host, showsEachFailure) {
    const TestBundle empty(""), good(episode), broken(SHADE "{ return colour; }");
    auto noDevice = environment();
    noDevice["TARNWICK_DEVICE"] = "no such device";
    struct Case {
        const TestBundle& files;
        std::map<std::string, std::string> environment;
        std::string beginning;
        bool preview;
    };
    for (const Case& row : {Case{empty, environment(), "The saver has no shader in it.", false},
                            Case{empty, environment(), "The saver has no shader in it.", true},
                            Case{good, noDevice, "No Metal device.", false},
                            Case{broken, environment(), "The shader didn't compile: ", false}}) {
        std::vector<std::string> arguments{"--bundle", row.files.folder(), "--size", "400x220"};
        if (row.preview)
            arguments.push_back("--preview");
        ProgramRun run(arguments, row.environment);
        const auto window = display.waitForWindow();
        ASSERT_TRUE(window);
        // The program says what it shows.
        ASSERT_TRUE(eventually([&] {
            return run.said().starts_with(row.beginning) && run.said().ends_with('\n');
        })) << run.said();
        std::string message = run.said();
        message.pop_back();
        expectFailureScreen(*window, message, row.preview ? 9 : 18);
        display.resizeWindow(*window, {500, 120});
        expectFailureScreen(*window, message, row.preview ? 9 : 18);
        display.askToClose(*window);
        EXPECT_EQ(run.waitForEnd(), 1);
    }
}

// As XScreenSaver's settings give it, which do not say that it is the preview.
TEST_F(Host, takesAWindowWithinAnotherForThePreview) {
    const TestBundle files("");
    for (const bool isCover : {false, true}) {
        const unsigned long outer =
            isCover ? display.makeCover({0, 0, 600, 400}) : display.makeWindow({0, 0, 600, 400});
        const unsigned long window = display.makeWindow({10, 10, 400, 200}, outer);
        ProgramRun run({"--bundle", files.folder(), "--window-id", std::to_string(window)},
                       environment());
        expectFailureScreen(window, "The saver has no shader in it.", isCover ? 18 : 9);
        display.destroyWindow(outer);
    }
}

// Some 60,000 rounds at each of 25,600 pixels.
constexpr const char* endless = SHADE "{ float x = uv.x; for (int i = 0; x > -1.0; i++)"
                                      " x = fract(x * 1.37 + u.time * 0.1); return float4(x); }";

TEST_F(Host, saysThatAShaderTakesTooLongAndEndsAllTheSame) {
    const TestBundle files(endless);
    const std::string message = "The shader takes too long.";
    const std::string picture = files.folder() + "/last.png";
    ProgramRun offscreen(
        {"--offscreen", "60", "--longest-frame", "1", "--bundle", files.folder(), "-o", picture},
        {});
    EXPECT_EQ(offscreen.waitForEnd(60), 1);
    EXPECT_TRUE(offscreen.said().starts_with(message + "\n")) << offscreen.said();

    ProgramRun run({"--bundle", files.folder(), "--size", "640x480", "--longest-frame", "1"},
                   environment());
    const auto window = display.waitForWindow();
    ASSERT_TRUE(window) << run.said();
    ASSERT_TRUE(eventually([&] { return run.said() == message + "\n"; }, 60)) << run.said();
    expectFailureScreen(*window, message, 18);
    run.signal(SIGTERM);
    EXPECT_EQ(run.waitForEnd(10), 1); // 2 s on an idle machine; a frame takes a minute
}

TEST_F(Host, showsInAWindowThatItIsGivenAndEndsWithIt) {
    const TestBundle files(episode);
    for (const bool byEnvironment : {false, true}) {
        const unsigned long window = display.makeWindow({20, 30, 200, 100});
        auto given = environment();
        std::vector<std::string> arguments{"--bundle", files.folder()};
        if (byEnvironment)
            given["XSCREENSAVER_WINDOW"] = std::to_string(window);
        else
            arguments.insert(arguments.end(), {"-window-id", std::to_string(window)});
        if (byEnvironment)
            arguments.push_back("--root"); // the environment is stronger
        ProgramRun run(arguments, given);
        ASSERT_TRUE(showsBlue(window)) << run.said();
        EXPECT_TRUE(fills(window));
        EXPECT_FALSE(display.othersAskForInput(window));
        display.resizeWindow(window, {320, 240});
        EXPECT_TRUE(fills(window));
        display.destroyWindow(window);
        EXPECT_EQ(run.waitForEnd(), 0) << run.said();
    }
}

TEST_F(Host, showsOnTheRootWindowOrTheVirtualOne) {
    const TestBundle files(episode);
    {
        ProgramRun run({"--bundle", files.folder(), "-root"}, environment());
        EXPECT_TRUE(showsBlue(display.root())) << run.said();
        EXPECT_TRUE(fills(display.root()));
        run.signal(SIGTERM);
        EXPECT_EQ(run.waitForEnd(), 0);
    }
    const unsigned long desktop = display.makeWindow({0, 0, 300, 200});
    display.nameVirtualRoot(desktop);
    ProgramRun run({"--bundle", files.folder(), "--root"}, environment());
    EXPECT_TRUE(showsBlue(desktop)) << run.said();
    EXPECT_TRUE(fills(desktop));
}

TEST_F(Host, coversTheScreenUntilTheFirstInput) {
    const TestBundle files(episode);
    ProgramRun run({"--bundle", files.folder(), "--until-input"}, environment());
    const auto window = display.waitForWindow();
    ASSERT_TRUE(window && showsBlue(*window)) << run.said();
    EXPECT_EQ(display.windowSize(*window), (PixelSize{640, 480}));
    std::this_thread::sleep_for(std::chrono::milliseconds(700)); // the input that started it
    EXPECT_TRUE(run.isRunning()) << run.said();
    const std::string press = "DISPLAY=" + display.name() + " xdotool key space";
    ASSERT_EQ(std::system(press.c_str()), 0) << "xdotool is in scripts/packages.txt.";
    EXPECT_EQ(run.waitForEnd(), 0) << run.said();
}

TEST_F(Host, drawsNothingWhileItIsCovered) {
    const TestBundle files(episode);
    ProgramRun run({"--bundle", files.folder(), "--size", "100x100"}, environment());
    const auto window = display.waitForWindow();
    ASSERT_TRUE(window && showsBlue(*window));
    const int before = display.pixel(*window, 4, 4)[1];
    const unsigned long cover = display.makeWindow({0, 0, 640, 480});
    std::this_thread::sleep_for(std::chrono::milliseconds(800));
    display.destroyWindow(cover);
    ASSERT_TRUE(showsBlue(*window));
    const int after = display.pixel(*window, 4, 4)[1];
    EXPECT_LT((after - before + 256) % 256, 128); // of 256 a second
    EXPECT_TRUE(changes(*window));
}

TEST_F(Host, endsWhenTheDisplayGoes) {
    const TestBundle files(episode);
    ProgramRun run({"--bundle", files.folder()}, environment());
    const auto window = display.waitForWindow();
    ASSERT_TRUE(window && showsBlue(*window));
    display.end();
    EXPECT_EQ(run.waitForEnd(), 0);
    EXPECT_EQ(run.said(), "The connection to the display broke.\n");
}

TEST_F(Host, saysWhyItCannotShowAnything) {
    ProgramRun noWindow({"--window-id", "0x1234"}, environment());
    EXPECT_EQ(noWindow.waitForEnd(), 1);
    EXPECT_EQ(noWindow.said(), "tarnwick-saver: There is no window 0x1234 on this display.\n");
    ProgramRun noDisplay({"--root"}, {});
    EXPECT_EQ(noDisplay.waitForEnd(), 1);
    EXPECT_EQ(noDisplay.said(), "tarnwick-saver: There is no display: DISPLAY is not set.\n");
    ProgramRun noSense({"--size", "0x0"}, environment());
    EXPECT_EQ(noSense.waitForEnd(), 2);
}

TEST(Offscreen, drawsThePictureThatTheWindowWouldShow) {
    const TestBundle files(episode);
    const std::string picture = files.folder() + "/last.png";
    ProgramRun run(
        {"--without-display", "1", "--bundle", files.folder(), "-o", picture, "--size", "200x100"},
        {});
    EXPECT_EQ(run.waitForEnd(), 0);
    EXPECT_NE(run.said().find(" frames per second on "), std::string::npos) << run.said();
    EXPECT_NE(run.said().find("The last frame is in " + picture + "."), std::string::npos);
    const Picture last = readPNG(picture);
    EXPECT_EQ(last.width, 200u);
    EXPECT_EQ(last.height, 100u);
    EXPECT_EQ(last.bytes.at(0), 255);               // blue
    EXPECT_NEAR(last.bytes.at(4 * 198 + 2), 51, 1); // the corner's red: 200 / 1000
}

TEST(Offscreen, drawsAnEpisodeWithTheSettingsBesideIt) {
    const TestBundle files(episode, "{\"name\":");
    const std::string folder = files.folder() + "/Shader/";
    std::filesystem::copy(folder + "shader.metal", folder + "saver.metal");
    auto said = [&](std::vector<std::string> more) {
        std::vector<std::string> arguments{"--offscreen", "0.1", folder + "saver.metal", "-o",
                                           folder + "last.png"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        ProgramRun run(arguments, {});
        EXPECT_EQ(run.waitForEnd(), 0);
        return run.said();
    };
    const std::string unread = "The settings cannot be read, so the defaults are used: "
                               "Line 1, column 9 is not JSON: ";
    const std::string found =
        "The settings are read from " + folder + "saver.json; --no-settings ignores them.\n";
    EXPECT_TRUE(said({}).starts_with(found + unread));
    EXPECT_TRUE(said({"--settings", folder + "saver.json"}).starts_with(unread));
    EXPECT_EQ(said({"--no-settings"}).find("settings"), std::string::npos);
}

TEST(Offscreen, keepsTheFailureScreenAndSaysSo) {
    const TestBundle files("");
    const std::string picture = files.folder() + "/last.png";
    ProgramRun run({"--offscreen", "1", "--bundle", files.folder(), "-o", picture}, {});
    EXPECT_EQ(run.waitForEnd(), 1);
    EXPECT_TRUE(run.said().starts_with("The saver has no shader in it.")) << run.said();
    EXPECT_EQ(readPNG(picture).width, 1280u);
}

} // namespace
} // namespace tarnwick
