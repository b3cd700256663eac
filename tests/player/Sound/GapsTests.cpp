// The sound of an episode whose frames take a second, recorded by SDL's driver that writes a file.
#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "player/Window/MainWindow.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <array>
#include <fstream>
#include <string>
#include <vector>

namespace tarnwick::player {
namespace {

constexpr double slowFrame = 0.8; // seconds

constexpr const char* sound =
    "float2 sound(float t, constant Params& p) { return float2(0.25); }\n";

// Each pixel takes `steps` steps of a loop.
std::string slow(int steps) {
    return "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
           "    float x = uv.x;\n    for (int i = 0; i < " +
           std::to_string(steps) +
           "; ++i) x = fract(sin(x * 12.9898 + u.time) * 43758.5453);\n"
           "    return float4(x, uv.y, 0.0, 1.0);\n}\n";
}

// Frames of silence after the first frame that is heard, and before the last one.
std::ptrdiff_t silentFrames(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    std::vector<float> heard;
    for (std::array<float, 2> frame{}; stream.read(reinterpret_cast<char*>(&frame), sizeof frame);)
        heard.push_back(frame[0]);
    const auto isHeard = [](float sample) { return sample != 0; };
    const auto first = std::ranges::find_if(heard, isHeard);
    const auto last = std::find_if(heard.rbegin(), heard.rend(), isHeard).base();
    EXPECT_GT(last - first, 3 * 48000);
    return std::count(first, last, 0.0f);
}

TEST(SoundGaps, areNotLeftByFramesOfASecond) {
    const QTemporaryDir folder;
    const QByteArray file = folder.filePath(QStringLiteral("sound.raw")).toUtf8();
    qputenv("SDL_AUDIODRIVER", "disk");
    qputenv("SDL_DISKAUDIOFILE", file);
    {
        Player player;
        MainWindow window(player);
        window.show();
        if (player.device() == nullptr)
            GTEST_SKIP() << player.deviceAbsence();
        player.setDivisor(1);
        OpenDocument* document = player.add(Document(slow(1)));
        std::string text;
        for (int steps = 1000; steps < 40000; steps *= 2) {
            text = slow(steps);
            document->setText(text);
            const std::uint64_t revision = document->document().revision();
            ASSERT_TRUE(becomesTrue([&] { return player.news().revision == revision; }));
            if (player.news().frameSeconds > slowFrame)
                break;
        }
        if (player.news().frameSeconds < slowFrame)
            GTEST_SKIP() << "No frame is slow here.";
        document->setText(sound + text);
        QTest::qWait(1500);
        const auto change = [&](const Transport& transport) {
            document->setTransport(transport);
            QTest::qWait(1200);
        };
        change(document->transport().sought(20, currentMediaTime()));
        change(document->transport().withLoop(LoopRange{20, 20.7}, currentMediaTime()));
        document->setText(document->document().text() + "// an edit\n");
        QTest::qWait(1500);
    }
    qunsetenv("SDL_AUDIODRIVER");
    qunsetenv("SDL_DISKAUDIOFILE");
    EXPECT_EQ(silentFrames(file.toStdString()), 0);
}

} // namespace
} // namespace tarnwick::player
