// The player's window on Qt's platform without a screen.
#include "TarnwickBase/TemporaryFolder.h"
#include "player/Editor/EpisodeEditor.h"
#include "player/Editor/FindBar.h"
#include "player/Panels/ParametersPanel.h"
#include "player/Panels/ProblemsPanel.h"
#include "player/Window/ClosableTarget.h"
#include "player/Window/DocumentTabs.h"
#include "player/Window/MainWindow.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSlider>
#include <QTabWidget>
#include <QTest>
#include <map>

namespace tarnwick::player {
namespace {

constexpr const char* text = "// @param red 0.25 0.0 1.0 How red\n"
                             "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
                             "    return float4(p.red, 0.0, 1.0, 1.0);\n"
                             "}\n";

class Window : public testing::Test {
  protected:
    Window() {
        window.show();
        document = player.add(Document(text));
        editor = window.findChild<EpisodeEditor*>();
        problems = window.findChild<ProblemsPanel*>();
    }

    // The colour of the frame's first pixel as 0xRRGGBB; -1 without one.
    int color() {
        const auto picture = player.picture().snapshot().get();
        if (!picture)
            return -1;
        return picture->bytes.at(2) << 16 | picture->bytes.at(1) << 8 | picture->bytes.at(0);
    }

    Player player;
    MainWindow window{player};
    OpenDocument* document;
    EpisodeEditor* editor;
    ProblemsPanel* problems;
};

TEST_F(Window, playsWhatIsTypedAndKeepsTheLastPictureDuringAnError) {
    if (player.device() == nullptr)
        GTEST_SKIP() << player.deviceAbsence();
    ASSERT_TRUE(becomesTrue([&] { return color() == 0x4000FF; }));
    editor->setCursorPosition(2, 4);
    QTest::keyClicks(editor, "vec3 v; ");
    ASSERT_TRUE(becomesTrue([&] { return problems->topLevelItemCount() > 0; }));
    EXPECT_EQ(problems->topLevelItem(0)->text(0), "3");
    EXPECT_EQ(color(), 0x4000FF);
    editor->undo();
    ASSERT_TRUE(becomesTrue([&] { return problems->topLevelItemCount() == 0; }));
    editor->setCursorPosition(2, 4);
    QTest::keyClicks(editor, "if (uv.x < 2.0) return float4(0.0, 1.0, 0.0, 1.0); ");
    EXPECT_TRUE(becomesTrue([&] { return color() == 0x00FF00; }));
}

TEST_F(Window, takesItsKeysInTheTextToo) {
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    editor->setFocus();
    editor->setCursorPosition(2, 8);
    QTest::keyClick(editor, Qt::Key_Slash, Qt::ControlModifier);
    EXPECT_EQ(editor->text(2).trimmed().toStdString(), "// return float4(p.red, 0.0, 1.0, 1.0);");
    const bool isPlaying = document->transport().isPlaying;
    QTest::keyClick(editor, Qt::Key_F5);
    EXPECT_NE(document->transport().isPlaying, isPlaying);
    editor->setCursorPosition(2, 8);
    QTest::keyClick(editor, Qt::Key_Right, Qt::ControlModifier);
    int line = 0, column = 0;
    editor->getCursorPosition(&line, &column);
    EXPECT_GT(column, 9) << "a word further";
}

TEST_F(Window, writesTheNumbersOfAParameterIntoItsLine) {
    document->setParamNumbers("red", {0.25f, -1, 2});
    EXPECT_EQ(editor->text(0).trimmed(), "// @param red 0.25 -1.0 2.0 How red");
    editor->undo();
    EXPECT_EQ(editor->episodeText(), text);
    EXPECT_EQ(document->document().text(), text);
}

TEST_F(Window, hasASliderForEachParameter) {
    if (player.device() == nullptr)
        GTEST_SKIP() << player.deviceAbsence();
    auto* panel = window.findChild<ParametersPanel*>();
    auto* slider = panel->findChild<QSlider*>();
    ASSERT_NE(slider, nullptr);
    EXPECT_EQ(slider->accessibleName(), "red");
    slider->setValue(slider->maximum());
    EXPECT_EQ(document->document().settings().values.at("red"), 1.0f);
    EXPECT_TRUE(becomesTrue([&] { return color() == 0xFF00FF; }));
    document->undoSettings();
    EXPECT_TRUE(becomesTrue([&] { return color() == 0x4000FF; }));
    editor->append("// @param blue 0 0 1\n");
    EXPECT_TRUE(becomesTrue([&] { return panel->findChildren<QSlider*>().size() == 2; }));
}

TEST_F(Window, findsReplacesAndGoesToLines) {
    auto* bar = window.findChild<FindBar*>();
    const auto entries = bar->findChildren<QLineEdit*>();
    entries[0]->setText("P.RED");
    entries[1]->setText("0.5");
    bar->findNext();
    EXPECT_EQ(editor->selectedText(), "p.red");
    for (QPushButton* button : bar->findChildren<QPushButton*>())
        if (button->text() == "Replace &all")
            button->click();
    EXPECT_TRUE(editor->text().contains("float4(0.5, 0.0"));
    editor->undo();
    EXPECT_EQ(editor->text(), QString(text));
    bar->goToLine();
    QTest::keyClicks(entries[0], "3\r");
    int line = 0, column = 0;
    editor->getCursorPosition(&line, &column);
    EXPECT_EQ(line, 2);
}

// The second entry with the same underlined letter needs more than one press.
TEST_F(Window, underlinesALetterOnceInEachMenu) {
    for (const QMenu* menu : window.findChildren<QMenu*>()) {
        std::map<QString, QString> letters;
        for (const QAction* action : menu->actions())
            if (const QString letter = QKeySequence::mnemonic(action->text()).toString();
                !letter.isEmpty()) {
                const auto [other, isNew] = letters.emplace(letter, action->text());
                EXPECT_TRUE(isNew)
                    << menu->title().toStdString() << ": " << other->second.toStdString() << ", "
                    << action->text().toStdString();
            }
    }
}

TEST_F(Window, hasATabForEachDocument) {
    auto* tabs = window.findChild<DocumentTabs*>()->findChild<QTabWidget*>();
    OpenDocument* second = player.add(Document("// second\n", "Second"));
    EXPECT_EQ(tabs->count(), 2);
    EXPECT_EQ(tabs->tabText(1), "Second");
    EXPECT_EQ(player.active(), second);
    EXPECT_EQ(window.windowTitle(), "Second[*]");
    EXPECT_FALSE(window.isWindowModified());
    window.findChild<DocumentTabs*>()->editor()->append("// more");
    EXPECT_TRUE(window.isWindowModified());
    tabs->setCurrentIndex(0);
    EXPECT_EQ(player.active(), document);
    player.close(document);
    EXPECT_EQ(tabs->count(), 1);
    EXPECT_EQ(player.active(), second);
    player.close(second);
    EXPECT_EQ(player.active(), nullptr);
    EXPECT_EQ(window.windowTitle(), "Tarnwick");
}

// Counts what a surface would show.
struct CountingTarget : FrameTarget {
    CountingTarget(int& calls, int& ends) : FrameTarget(1), calls(calls), ends(ends) {}
    ~CountingTarget() override { ++ends; }
    void resize(const PixelSize&) override {}
    bool waitForRoom(double) override { return ++calls > 0; }
    const gpu::Texture* nextTexture() override {
        ++calls;
        return nullptr;
    }
    void present(gpu::CommandBuffer) override { ++calls; }
    int& calls;
    int& ends;
};

TEST(ClosableTarget, leavesASurfaceThatIsClosed) {
    int calls = 0, ends = 0;
    for (const bool isGone : {false, true}) {
        const auto surface = std::make_shared<SurfaceState>();
        auto inner = std::make_unique<CountingTarget>(calls, ends);
        const CountingTarget* left = inner.get();
        {
            ClosableTarget target(std::move(inner), surface);
            target.nextTexture();
            EXPECT_TRUE(target.waitForRoom(0));
            EXPECT_EQ(std::exchange(calls, 0), 2);
            surface->close();
            target.nextTexture();
            EXPECT_FALSE(target.waitForRoom(0));
            EXPECT_EQ(calls, 0);
            if (isGone)
                surface->abandon();
        }
        EXPECT_EQ(ends, 1) << "an abandoned one is not destroyed";
        if (isGone)
            delete left;
    }
}

} // namespace
} // namespace tarnwick::player
