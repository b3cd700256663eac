// The start page, the folder browser and the command list on Qt's platform without a screen.
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "player/CommandList/CommandList.h"
#include "player/Start/FolderBrowser.h"
#include "player/Start/StartPage.h"
#include "player/Window/MainWindow.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QDockWidget>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTreeWidget>

namespace tarnwick::player {
namespace {

class Start : public testing::Test {
  protected:
    Start() { window.show(); }

    CellGrid* grid(const char* name) {
        for (auto* one : window.findChildren<CellGrid*>())
            if (one->accessibleName() == QLatin1String(name))
                return one;
        return nullptr;
    }

    Player player;
    MainWindow window{player};
};

TEST_F(Start, isShownWithoutAnEpisodeAndMakesOneFromATemplate) {
    auto* page = window.findChild<StartPage*>();
    auto* dock = window.findChild<QDockWidget*>("parameters");
    ASSERT_TRUE(becomesTrue([&] { return page->isVisible(); }));
    EXPECT_FALSE(dock->isVisible());
    CellGrid* templates = grid("New episode from a template");
    ASSERT_NE(templates, nullptr);
    templates->setCurrentIndex(templates->model()->index(1, 0));
    QTest::keyClick(templates, Qt::Key_Return);
    ASSERT_NE(player.active(), nullptr);
    EXPECT_EQ(player.active()->document().episode()->kind, ShaderKind::particles);
    EXPECT_FALSE(page->isVisible());
    EXPECT_TRUE(dock->isVisible());
    player.close(player.active());
    EXPECT_TRUE(page->isVisible());
}

TEST_F(Start, browsesAFolderByKeyboard) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "below");
    writeWholeFile(folder.path() / "below" / "a.metal", "// a\n");
    writeWholeFile(folder.path() / "below" / "b.metal", "// b\n");
    window.open({QString::fromStdString(folder.path().string())});
    CellGrid* episodes = grid("Episodes of the folder");
    ASSERT_TRUE(becomesTrue([&] { return episodes->count() == 1; }));
    QTest::keyClick(episodes, Qt::Key_Return);
    ASSERT_TRUE(becomesTrue([&] { return episodes->count() == 2; }));
    QTest::keyClick(episodes, Qt::Key_Backspace);
    ASSERT_TRUE(becomesTrue([&] { return episodes->count() == 1; }));
    QTest::keyClick(episodes, Qt::Key_Return);
    ASSERT_TRUE(becomesTrue([&] { return episodes->count() == 2; }));
    QTest::keyClick(episodes, Qt::Key_Slash);
    auto* filter = window.findChild<FolderBrowser*>()->findChild<QLineEdit*>();
    EXPECT_TRUE(filter->hasFocus());
    QTest::keyClicks(filter, "B");
    ASSERT_EQ(episodes->count(), 1);
    QTest::keyClick(episodes, Qt::Key_Return);
    ASSERT_TRUE(becomesTrue([&] { return player.active() != nullptr; }));
    EXPECT_EQ(player.active()->document().title(), "b");
    window.open({QString::fromStdString(folder.path().string())});
    ASSERT_TRUE(becomesTrue([&] { return episodes->count() == 1; }));
    std::filesystem::create_directory(folder.path() / "back");
    QTest::keyClick(episodes, Qt::Key_R, Qt::ControlModifier); // of the episode: records
    EXPECT_TRUE(becomesTrue([&] { return episodes->count() == 2; }));
}

// A dock behind a tab is shown outside of the window, and raising it only moves it.
TEST_F(Start, drawsTheVariationsWhenTheMenuBringsThemToTheFront) {
    if (player.device() == nullptr)
        GTEST_SKIP() << player.deviceAbsence();
    player.add(Document("// @param red 0.2 0.0 1.0 How red\n"
                        "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
                        "    return float4(p.red, uv, 1.0);\n"
                        "}\n",
                        "Red"));
    QTest::qWait(200); // the grid has looked for its visible pictures
    auto* dock = window.findChild<QDockWidget*>("variations");
    const QList<QMenu*> menus = window.menuBar()->findChildren<QMenu*>();
    QAction* shown = nullptr;
    for (const QMenu* menu : menus)
        for (QAction* action : menu->actions())
            if (action->text() == "Variations")
                shown = action;
    ASSERT_NE(shown, nullptr);
    shown->trigger();
    EXPECT_TRUE(shown->isChecked());
    CellGrid* variations = grid("Variations");
    ASSERT_NE(variations, nullptr);
    EXPECT_TRUE(becomesTrue([&] {
        const QModelIndex second = variations->model()->index(1, 0);
        return !second.data(CellModel::imageRole).value<QImage>().isNull();
    }));
    shown->trigger();
    EXPECT_TRUE(dock->isHidden());
    shown->trigger();
    EXPECT_FALSE(dock->visibleRegion().isEmpty());
}

TEST_F(Start, runsACommandFoundByItsLetters) {
    player.add(Document("// one\n", "One"));
    auto* commands = window.findChild<CommandList*>();
    commands->open();
    auto* query = commands->findChild<QLineEdit*>();
    auto* list = commands->findChild<QTreeWidget*>();
    EXPECT_GT(list->topLevelItemCount(), 20);
    QTest::keyClicks(query, "cls");
    ASSERT_NE(list->currentItem(), nullptr);
    EXPECT_EQ(list->currentItem()->text(0), "Close");
    QTest::keyClick(query, Qt::Key_Return);
    EXPECT_TRUE(becomesTrue([&] { return player.documents().empty(); }));
    EXPECT_FALSE(commands->isVisible());
}

} // namespace
} // namespace tarnwick::player
