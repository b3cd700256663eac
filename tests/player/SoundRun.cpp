// playerSoundRun SECONDS [SEED]: plays a sawtooth in the player's window on Qt's platform without a
// screen, with random seeks, edits, values and loops, through the sound device that SDL chooses.
// Prints the frames that the device took, those that were missing, and the longest wait between two
// calls of the device. Exits with 1 if a frame was missing.
//
// A recording of the device's monitor shows the rest: the sawtooth rises by 1/24000 in each frame.
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "TarnwickPlatform/Sound/SoundOutput.h"
#include "player/SoundPanel/SoundControls.h"
#include "player/Window/MainWindow.h"

#include <QApplication>
#include <QTest>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

namespace tarnwick::player {
namespace {

constexpr int changeInterval = 1000; // milliseconds
constexpr PixelSize pictureSize{160, 90};

const std::string episode =
    "// @param hue 0.5 0 1\n"
    "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
    "    return float4(fract(u.time), uv.x, p.hue, 1.0);\n}\n"
    "float2 sound(float t, constant Params& p) { return float2(2.0 * fract(t) - 1.0); }\n";

// A change that is heard, or must not be.
void change(OpenDocument& document, std::mt19937& random) {
    const double now = currentMediaTime();
    const double share = std::uniform_real_distribution<double>()(random);
    switch (random() % 5) {
    case 0:
        document.setTransport(document.transport().sought(100 * share, now));
        break;
    case 1:
        document.setText(episode + "// edit " + std::to_string(random()) + "\n");
        break;
    case 2:
        document.setTransport(
            document.transport().sought(50, now).withLoop(LoopRange{50, 50.2 + share}, now));
        break;
    case 3:
        document.setTransport(document.transport().withLoop(std::nullopt, now));
        break;
    default:
        document.setValue("hue", static_cast<float>(share));
    }
}

int soundRun(double seconds, unsigned seed) {
    Player player;
    MainWindow window(player);
    window.show();
    player.setPictureSize(pictureSize);
    OpenDocument* document = player.add(Document(episode));
    auto* sound = window.findChild<SoundControls*>();
    for (int waits = 0; waits < 100 && !document->program(); ++waits)
        QTest::qWait(100);
    if (!document->program())
        return 2;
    document->setTransport(document->transport().played(currentMediaTime()));
    std::mt19937 random(seed);
    const double end = currentMediaTime() + seconds;
    while (currentMediaTime() < end) {
        QTest::qWait(changeInterval);
        if (seed > 0)
            change(*document, random);
    }
    const SoundFigures figures = sound->figures();
    std::printf("%" PRId64 " frames taken, %" PRId64 " missing, longest wait %.1f ms\n",
                figures.taken, figures.missing, figures.longestWait * 1000);
    return figures.missing == 0 ? 0 : 1;
}

} // namespace
} // namespace tarnwick::player

int main(int count, char** words) {
    const tarnwick::TemporaryFolder folder;
    for (const char* name : {"XDG_STATE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        qputenv(name, folder.path().c_str());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "default.warning=false"); // of what the platform cannot do
    tarnwick::SoundOutput::askForServerBuffer();
    QApplication application(count, words);
    const double seconds = count > 1 ? std::atof(words[1]) : 60;
    const unsigned seed = count > 2 ? static_cast<unsigned>(std::atoi(words[2])) : 1;
    return tarnwick::player::soundRun(seconds, seed);
}
