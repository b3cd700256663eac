// Performances recorded and replayed in the window.
#include "TarnwickCore/Performance/InputFiles.h"
#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "TarnwickPlatform/Pictures/Composing.h"
#include "TarnwickPlatform/Pictures/PNG.h"
#include "TarnwickRender/AudioRenderer.h"
#include "player/ChannelsPanel/ChannelActions.h"
#include "player/Panels/ParametersPanel.h"
#include "player/Performances/PerformanceFeature.h"
#include "player/Performances/PerformancesPanel.h"
#include "player/SoundPanel/SoundControls.h"
#include "player/Window/MainWindow.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>
#include <fstream>

namespace tarnwick::player {
namespace {

constexpr const char* text = "// @param red 0.25 0.0 1.0 How red\n"
                             "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
                             "    return float4(p.red, 0.0, 1.0, 1.0);\n"
                             "}\n";

class PerformanceWindow : public testing::Test {
  protected:
    void SetUp() override {
        qputenv("XDG_DATA_HOME", folder.path().toUtf8());
        player = std::make_unique<Player>();
        if (player->device() == nullptr)
            GTEST_SKIP() << player->deviceAbsence();
        window = std::make_unique<MainWindow>(*player);
        window->show();
        document = player->add(Document(text, "Mine"));
        slider = window->findChild<ParametersPanel*>()->findChild<QSlider*>();
        list = window->findChild<PerformancesPanel*>()->findChild<QTreeWidget*>();
        ASSERT_TRUE(becomesTrue([this] { return document->program() != nullptr; }));
    }
    void trigger(const QKeySequence& keys) {
        for (QAction* action : window->findChildren<QAction*>())
            if (action->shortcut() == keys)
                action->trigger();
    }
    int red() {
        const auto picture = player->picture().snapshot().get();
        return picture ? picture->bytes.at(2) : -1;
    }

    QTemporaryDir folder;
    std::unique_ptr<Player> player;
    std::unique_ptr<MainWindow> window;
    OpenDocument* document = nullptr;
    QSlider* slider = nullptr;
    QTreeWidget* list = nullptr;
};

TEST_F(PerformanceWindow, recordsWhatMovesAndReplaysItWithoutChangingTheDocument) {
    const QKeySequence record(QStringLiteral("Ctrl+R")), replay(QStringLiteral("Ctrl+Shift+R"));
    trigger(record);
    QTest::qWait(100);
    slider->setValue(slider->maximum());
    QTest::qWait(700);
    slider->setValue(slider->minimum());
    QTest::qWait(100);
    trigger(record);
    ASSERT_TRUE(becomesTrue([this] { return list->topLevelItemCount() == 1; }));
    const std::string file = list->topLevelItem(0)->data(0, Qt::UserRole).toString().toStdString();
    const Performance made = readPerformance(file);
    EXPECT_EQ(made.episode, Performance::markOf("Mine", text));
    ASSERT_EQ(made.changes.size(), 2u);
    EXPECT_EQ(made.changes[0].what, Performance::What(Performance::Value{"red", 1.0f}));
    EXPECT_GE(made.changes[1].time - made.changes[0].time, 0.6);

    ASSERT_TRUE(becomesTrue([this] { return red() == 0; }));
    const std::string undo = document->document().history().undoName();
    trigger(replay);
    ASSERT_TRUE(becomesTrue([this] { return slider->value() == slider->maximum(); }));
    EXPECT_TRUE(becomesTrue([this] { return red() == 255; }));
    EXPECT_EQ(document->document().settings().values.at("red"), 0);
    EXPECT_EQ(document->document().history().undoName(), undo);
    EXPECT_TRUE(becomesTrue([this] { return slider->value() == slider->minimum(); }));

    Performer& performer = window->findChild<PerformanceFeature*>()->performer();
    ASSERT_TRUE(becomesTrue([&] { return !performer.isReplaying(); })); // at its end
    trigger(replay);
    ASSERT_TRUE(becomesTrue([this] { return slider->value() == slider->maximum(); }));
    slider->setValue(slider->maximum() / 2); // a touch ends it
    EXPECT_FLOAT_EQ(document->document().settings().values.at("red"), 0.5f);
    EXPECT_TRUE(becomesTrue([this] { return red() == 128; }));
}

constexpr const char* shows =
    "float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {\n"
    "    return in.channel(0, uv);\n}\n";

// A replay has the files of the recording, also those that were set in it, and gives the document's
// own back.
TEST_F(PerformanceWindow, replaysTheFilesOfItsChannels) {
    const auto picture = [this](const char* name, std::array<std::uint8_t, 3> color) {
        const std::filesystem::path file = folder.filePath(QLatin1String(name)).toStdString();
        writePNG(filledPicture(4, 4, color), file);
        return file;
    };
    const std::filesystem::path grey = picture("grey.png", {64, 64, 64}),
                                white = picture("white.png", {255, 255, 255}),
                                black = picture("black.png", {0, 0, 0});
    document->setText(shows);
    ASSERT_TRUE(becomesTrue([this] { return document->program()->usesInputs(); }));
    DocumentChannels& channels = window->findChild<ChannelActions*>()->channels();
    const auto shown = [&](const std::filesystem::path& file) {
        channels.choose(*document, 0, choiceOf(file));
    };
    shown(grey);
    ASSERT_TRUE(becomesTrue([this] { return red() == 64; }));
    const QKeySequence record(QStringLiteral("Ctrl+R")), replay(QStringLiteral("Ctrl+Shift+R"));
    trigger(record);
    QTest::qWait(300);
    shown(white);
    QTest::qWait(300);
    shown(black);
    QTest::qWait(300);
    trigger(record);
    ASSERT_TRUE(becomesTrue([this] { return list->topLevelItemCount() == 1; }));
    const std::string file = list->topLevelItem(0)->data(0, Qt::UserRole).toString().toStdString();
    const Performance made = readPerformance(file);
    EXPECT_TRUE(made.remarks.empty());
    EXPECT_EQ(made.start.inputs.at("0").file, grey.string());
    ASSERT_EQ(made.changes.size(), 2u);
    EXPECT_EQ(std::get<Performance::Input>(made.changes[0].what).file, performedFile(white));

    ASSERT_TRUE(becomesTrue([this] { return red() == 0; }));
    trigger(replay);
    EXPECT_TRUE(becomesTrue([this] { return red() == 64; }));
    EXPECT_TRUE(becomesTrue([this] { return red() == 255; }));
    EXPECT_EQ(channels.choices(*document)[0], choiceOf(black));
    Performer& performer = window->findChild<PerformanceFeature*>()->performer();
    performer.setClock(
        performer.clock().sought(0.1, currentMediaTime()).paused(currentMediaTime()));
    EXPECT_TRUE(becomesTrue([this] { return red() == 64; }));
    performer.stopReplay();
    EXPECT_TRUE(becomesTrue([this] { return red() == 0; }));
}

constexpr const char* hears =
    "float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {\n"
    "    return float4(in.audio.w > 0.1 ? 1.0 : 0.0, 0.0, 0.0, 1.0);\n}\n";

// The sound file that was chosen is heard in the replay up to the time at which the own sound was.
TEST_F(PerformanceWindow, replaysTheSoundInputOfEachTime) {
    const std::filesystem::path song = folder.filePath(QStringLiteral("a.wav")).toStdString();
    std::vector<float> tone(std::size_t{2} * 48000);
    for (std::size_t at = 0; at < tone.size(); ++at)
        tone[at] = at / 100 % 2 == 0 ? 0.5f : -0.5f;
    const auto bytes = AudioRenderer::wavData(tone);
    std::ofstream(song, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
    document->setText(hears);
    document->setTransport(document->transport().played(currentMediaTime()));
    auto* sound = window->findChild<SoundControls*>();
    const auto choose = [&](const std::string& words) { sound->setInput(SoundInput::of(words)); };
    choose(song);
    ASSERT_TRUE(becomesTrue([this] { return red() == 255; }));
    const QKeySequence record(QStringLiteral("Ctrl+R")), replay(QStringLiteral("Ctrl+Shift+R"));
    trigger(record);
    QTest::qWait(700);
    choose("own");
    QTest::qWait(700);
    trigger(record);
    ASSERT_TRUE(becomesTrue([this] { return list->topLevelItemCount() == 1; }));
    const std::string file = list->topLevelItem(0)->data(0, Qt::UserRole).toString().toStdString();
    const Performance made = readPerformance(file);
    EXPECT_TRUE(made.start.inputs.at("audio").isPlayed);
    ASSERT_EQ(made.changes.size(), 1u);
    EXPECT_EQ(made.changes[0].what, Performance::What(Performance::Input{"audio"}));

    ASSERT_TRUE(becomesTrue([this] { return red() == 0; }));
    trigger(replay);
    EXPECT_TRUE(becomesTrue([this] { return red() == 255; }));
    EXPECT_TRUE(becomesTrue([this] { return red() == 0; }));
    EXPECT_EQ(sound->input(), SoundInput());
}

} // namespace
} // namespace tarnwick::player
