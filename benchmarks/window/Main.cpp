// tarnwick-window-gaps [SECONDS]: prints the longest time in which the player's window does not
// answer while somebody types and moves a parameter: in an episode of short frames, in one of
// frames of 300 ms, while a program is compiled for seconds, and in a text of 3,000 lines.
#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "benchmarks/window/EventGaps.h"
#include "player/Editor/EpisodeEditor.h"
#include "player/Window/MainWindow.h"

#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace tarnwick::player {
namespace {

constexpr int keyInterval = 60;     // milliseconds between two keys
constexpr double longestWait = 60;  // seconds for a program
constexpr double slowFrame = 0.3;   // seconds
constexpr double longPipelines = 2; // seconds
constexpr int linesOfLongText = 3000;

constexpr const char* head =
    "// @param gain 0.5 0.0 1.0 A parameter\n"
    "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n";

std::string quick() {
    return std::string(head) + "    return float4(uv, p.gain, 1.0);\n}\n";
}

// Each pixel takes `steps` steps of a loop, below the device's limit of loops.
std::string slow(int steps) {
    return std::string(head) + "    float x = uv.x;\n    for (int i = 0; i < " +
           std::to_string(steps) +
           "; ++i) x = fract(sin(x * 12.9898 + u.time) * 43758.5453);\n"
           "    return float4(x, uv.y, p.gain, 1.0);\n}\n";
}

// `terms` different functions, so that the driver takes long to make the pipeline.
std::string large(int terms, int seed) {
    std::string text, sum;
    for (int term = 0; term < terms; ++term) {
        const std::string number = std::to_string(term), value = std::to_string(seed + term);
        text += "float term" + number + "(float2 q) { return sin(q.x * " + value +
                ".5 + cos(q.y * " + number + ".25)) * exp(-length(q) * 0." + value +
                ") + atan2(q.x + " + value + ".0, q.y) * pow(abs(q.x), 1." + number + "); }\n";
        sum += "    x += term" + number + "(uv + x);\n";
    }
    return text + head + "    float x = p.gain;\n" + sum + "    return float4(x, uv, 1.0);\n}\n";
}

std::string longText() {
    std::string text = quick();
    for (int line = 0; line < linesOfLongText; ++line)
        text += "float unused" + std::to_string(line) + "(float x) { return x * 2.0; } // a line\n";
    return text;
}

class Measuring {
  public:
    Measuring() { window_.show(); }

    bool hasDevice() const { return player_.device() != nullptr; }

    // Runs the loop of events until `holds`.
    template <typename Condition> bool runUntil(double seconds, const Condition& holds) {
        const double end = currentMediaTime() + seconds;
        while (!holds() && currentMediaTime() < end)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return holds();
    }
    void run(double seconds) {
        runUntil(seconds, [] { return false; });
    }
    OpenDocument* open(const std::string& text) {
        OpenDocument* document = player_.add(Document(text));
        player_.setDivisor(1);
        runUntil(longestWait, [&] { return document->result() && shows(*document); });
        return document;
    }
    bool shows(const OpenDocument& document) const {
        return player_.news().revision == document.programRevision();
    }
    void close(OpenDocument* document) { player_.close(document); }

    // Types into the active document and moves its parameter for some seconds.
    void print(const char* name, OpenDocument* document, double seconds,
               const std::string& remark = {}) {
        EpisodeEditor* editor = nullptr;
        for (EpisodeEditor* one : window_.findChildren<EpisodeEditor*>())
            editor = one->isVisible() ? one : editor;
        int count = 0;
        QTimer keys;
        QObject::connect(&keys, &QTimer::timeout, [&] {
            type(editor, count);
            document->setValue("gain", static_cast<float>(++count % 100) / 100);
        });
        keys.start(keyInterval);
        gaps_.restart();
        run(seconds);
        const double longest = gaps_.longest();
        std::printf("%-28s longest gap %6.1f ms%s\n", name, longest * 1000, remark.c_str());
        std::fflush(stdout);
    }

    double frameSeconds() const { return player_.news().frameSeconds; }

    // The gap while a program is compiled whose pipelines take two seconds.
    void printCompiling() {
        OpenDocument* document = open(quick());
        int terms = 100;
        for (int round = 0; round < 6; ++round) {
            gaps_.restart();
            document->setText(large(terms, static_cast<int>(std::rand()) % 900));
            document->compileNow();
            const auto revision = document->document().revision();
            if (!runUntil(longestWait, [&] {
                    return document->programRevision() == revision && shows(*document);
                }))
                break;
            const double made = document->result()->pipelineSeconds;
            if (made + player_.news().firstDraw >= longPipelines || round == 5) {
                std::printf("%-28s longest gap %6.1f ms (pipelines %.2f s, first frame %.2f s)\n",
                            "making long pipelines", gaps_.longest() * 1000, made,
                            player_.news().firstDraw);
                break;
            }
            terms *= 2;
        }
        close(document);
    }

  private:
    // A character at the end of the second line's comment, in turn inserted and deleted.
    static void type(EpisodeEditor* editor, int count) {
        if (editor == nullptr)
            return;
        const bool inserts = count % 8 < 4;
        const int key = inserts ? Qt::Key_A : Qt::Key_Backspace;
        if (count % 8 == 0) {
            editor->setCursorPosition(0, editor->lineLength(0) - 1);
        }
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier,
                        inserts ? QStringLiteral("a") : QString());
        QCoreApplication::sendEvent(editor, &press);
    }

    Player player_;
    MainWindow window_{player_};
    EventGaps gaps_;
};

int measure(double seconds) {
    Measuring measuring;
    if (!measuring.hasDevice()) {
        std::fprintf(stderr, "There is no device to draw with.\n");
        return 1;
    }
    OpenDocument* document = measuring.open(quick());
    measuring.print("short frames", document, seconds);
    measuring.close(document);

    for (int steps = 500; steps < 50000; steps *= 2) {
        document = measuring.open(slow(steps));
        measuring.run(1);
        const double frame = measuring.frameSeconds();
        if (frame >= slowFrame || steps * 2 >= 50000) {
            measuring.print("long frames", document, seconds,
                            " (frames of " + std::to_string(static_cast<int>(frame * 1000)) +
                                " ms)");
            measuring.close(document);
            break;
        }
        measuring.close(document);
    }
    measuring.printCompiling();
    document = measuring.open(longText());
    measuring.print("typing in 3,000 lines", document, seconds);
    measuring.close(document);
    return 0;
}

} // namespace
} // namespace tarnwick::player

int main(int count, char** words) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(count, words);
    std::srand(static_cast<unsigned>(tarnwick::currentMediaTime() * 1000)); // no cached pipelines
    const double seconds = count > 1 ? std::atof(words[1]) : 5;
    return tarnwick::player::measure(seconds);
}
