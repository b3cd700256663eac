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
#include <QLineEdit>
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
