// playerSoak [EDITS] [SEED] [SECONDS]: edits episodes at random in the player's window on Qt's
// platform without a screen, with random seeks and values, and prints what the player and its
// compiler take at a hundred places. With SECONDS, the edits are spread over that time and playing
// is sought between them. Exits with 1 if the figures grow, or if an edit is neither seen nor
// explained to the user.
#include "TarnwickBase/FreedMemory.h"
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "player/Editor/EpisodeEditor.h"
#include "player/Window/MainWindow.h"
#include "tests/reliability/Footprint.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace tarnwick::player {
namespace {

constexpr int defaultEdits = 2000;
constexpr int longestEdit = 20000; // milliseconds
constexpr int seekInterval = 400;  // milliseconds between seeks in a pause
constexpr int samples = 100;
constexpr PixelSize pictureSize{160, 90};

const std::vector<std::string> episodes{
    R"(// @param size 0.4 0 1 Size
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    float d = length(uv - 0.5) - p.size * (0.5 + 0.25 * sin(u.time));
    float3 c = mix(float3(0.9, 0.4, 0.2), float3(0.1, 0.2, 0.5), smoothstep(0.0, 0.1, d));
    return float4(c, 1.0);
}
)",
    R"(// @param trail 0.9 0 1 Trail
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    float2 at = 0.5 + 0.3 * float2(cos(u.time * 2.0), sin(u.time * 3.0));
    float3 last = in.previous(uv).rgb * p.trail;
    return float4(max(last, float3(smoothstep(0.1, 0.0, length(uv - at)))), 1.0);
}
)",
    R"(// @particles 500
// @param speed 0.5 0 1 Speed
struct Particle { float2 at; };
Particle spawn(uint id, constant Params& p) { return {float2(0.1, 0.002 * float(id))}; }
void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {
    q.at.x = fract(q.at.x + 0.0001 * p.speed * float(id));
}
float3 place(Particle q, constant Uniforms& u, constant Params& p) { return float3(q.at, 0.02); }
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) { return float4(0.5); }
float4 fade(float2 uv, Trails t, constant Uniforms& u, constant Params& p) { return t.at(uv) * 0.9; }
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails t) { return t.at(uv); }
)"};

class Soak {
  public:
    explicit Soak(unsigned seed) : random_(seed) {
        window_.show();
        for (const std::string& text : episodes)
            player_.add(Document(text));
        player_.setPictureSize(pictureSize);
    }

    enum class Outcome { seen, explained, missed };

    // Whether the text of the edit was compiled and, if it is a program, seen, or after 20 s the
    // player says that it computes the picture.
    Outcome edit() {
        player_.activate(player_.documents()[below(player_.documents().size())].get());
        OpenDocument& document = *player_.active();
        auto* editor = editorOf(document);
        for (int change = 0; change < 3; ++change)
            changeText(*editor);
        if (below(2) == 0) // so that half of the edits compile
            reset(document, *editor);
        seek(document);
        setValue(document);
        document.compileNow();
        const Outcome outcome = waitFor(document);
        if (outcome != Outcome::seen)
            std::fprintf(stderr, "%s:\n%s\n",
                         outcome == Outcome::missed ? "Not seen" : "Seen late, as was told",
                         document.document().text().c_str());
        pictures_ += document.result() != nullptr && document.result()->program ? 1 : 0;
        return outcome;
    }
    // Seeks at random until a moment of the host clock.
    void playUntil(double end) {
        while (currentMediaTime() < end) {
            seek(*player_.active());
            QTest::qWait(seekInterval);
        }
    }

    int pictures() const { return pictures_; } // edits that were programs

  private:
    std::size_t below(std::size_t end) {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
    }
    EpisodeEditor* editorOf(const OpenDocument& document) {
        for (auto* editor : window_.findChildren<EpisodeEditor*>())
            if (editor->episodeText() == document.document().text())
                return editor;
        std::abort(); // each document has a different text
    }
    static void reset(OpenDocument& document, EpisodeEditor& editor) {
        editor.setEpisodeText(episodes[document.id() - 1]);
        document.setText(editor.episodeText());
    }
    void changeText(EpisodeEditor& editor) {
        const int line = static_cast<int>(below(static_cast<std::size_t>(editor.lines())));
        const int length = editor.lineLength(line);
        const int column =
            length > 1 ? static_cast<int>(below(static_cast<std::size_t>(length))) : 0;
        editor.setCursorPosition(line, column);
        switch (below(6)) {
        case 0:
            editor.undo();
            break;
        case 1:
            QTest::keyClick(&editor, Qt::Key_Backspace);
            break;
        case 2:
            QTest::keyClicks(&editor, "{");
            break;
        default:
            QTest::keyClicks(&editor, QString::number(below(10)));
        }
    }
    void seek(OpenDocument& document) {
        const Transport& transport = document.transport();
        const double now = currentMediaTime();
        const auto to = static_cast<double>(below(600)) / 100;
        document.setTransport(below(3) == 0 ? transport.sought(to, now).paused(now)
                                            : transport.sought(to, now).played(now));
    }
    void setValue(OpenDocument& document) {
        if (document.program() && !document.program()->params().empty())
            document.setValue(document.program()->params().front().name,
                              static_cast<float>(below(100)) / 100);
    }
    Outcome waitFor(const OpenDocument& document) {
        QElapsedTimer timer;
        timer.start();
        const auto isDone = [&] {
            const auto* result = document.result();
            const bool isCompiled =
                result != nullptr && result->revision == document.document().revision();
            return isCompiled &&
                   (!result->program || player_.news().revision == document.programRevision() ||
                    !player_.news().failure.empty());
        };
        while (!isDone() && timer.elapsed() < longestEdit)
            QTest::qWait(5);
        if (isDone())
            return Outcome::seen;
        return player_.news().warming ? Outcome::explained
                                      : Outcome::missed; // "Computing 60 of 360"
    }

    std::mt19937 random_;
    int pictures_ = 0;
    Player player_;
    MainWindow window_{player_};
};

// Without freed memory, of which glibc keeps the most that each of its arenas ever held.
Footprint withCompiler() {
    giveFreedMemoryBack();
    Footprint found = Footprint::present();
    for (const pid_t child : childProcesses())
        found += Footprint::of(child);
    return found;
}

int soak(int edits, unsigned seed, double seconds) {
    Soak soak(seed);
    FootprintCourse course("edits");
    int missed = 0;
    const double begin = currentMediaTime();
    for (int edit = 1; edit <= edits; ++edit) {
        const Soak::Outcome outcome = soak.edit();
        missed += outcome == Soak::Outcome::missed ? 1 : 0;
        soak.playUntil(begin + seconds * edit / edits);
        if (edit % std::max(1, edits / samples) == 0)
            course.add(edit, withCompiler());
    }
    std::printf("seed %u: %d edits, %d pictures, %.0f s; %s\n", seed, edits, soak.pictures(),
                currentMediaTime() - begin,
                missed == 0 ? "every edit was seen or explained" : "EDITS WERE MISSED");
    return course.isFlat() && missed == 0 ? 0 : 1;
}

} // namespace
} // namespace tarnwick::player

int main(int count, char** words) {
    const tarnwick::TemporaryFolder folder;
    for (const char* name : {"XDG_STATE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        qputenv(name, folder.path().c_str());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "default.warning=false"); // of what the platform cannot do
    QApplication application(count, words);
    const int edits = count > 1 ? std::atoi(words[1]) : tarnwick::player::defaultEdits;
    const unsigned seed = count > 2 ? static_cast<unsigned>(std::atoi(words[2])) : 1;
    const double seconds = count > 3 ? std::atof(words[3]) : 0;
    return tarnwick::player::soak(edits, seed, seconds);
}
