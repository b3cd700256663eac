// The dialogs and panels of the window, by keyboard and for people who do not see them.
#include "player/Editor/FindBar.h"
#include "player/Start/StartPage.h"
#include "player/Window/MainWindow.h"
#include "tests/player/Controls/Audit.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDockWidget>
#include <QFileDialog>
#include <QMenuBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <set>
#include <string>

namespace tarnwick::player {
namespace {

constexpr const char* text = "// @param red 0.25 0.0 1.0 How red\n"
                             "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
                             "    return float4(p.red, 0.0, 1.0, 1.0);\n"
                             "}\n";

class Dialogs : public testing::Test {
  protected:
    void SetUp() override {
        if (player.device() == nullptr)
            GTEST_SKIP() << player.deviceAbsence();
        window.resize(1360, 820);
        window.show();
        document = player.add(Document(text, "Mine"));
        ASSERT_TRUE(becomesTrue([this] { return document->program() != nullptr; }));
    }

    // Examines each page of a dialog or a panel, and of the tabs in it.
    static void examinePages(QWidget& part, const std::string& name,
                             const std::set<QString>& taken = {}) {
        EXPECT_EQ(namelessControls(part), "") << name;
        auto* tabs = qobject_cast<QTabWidget*>(&part);
        if (tabs == nullptr)
            tabs = part.findChild<QTabWidget*>();
        const int pages = tabs != nullptr ? tabs->count() : 1;
        for (int page = 0; page < pages; ++page) {
            if (tabs != nullptr)
                tabs->setCurrentIndex(page);
            QTest::qWait(1); // the layout
            EXPECT_EQ(doubledLetters(part, taken), "") << name << ", page " << page;
            EXPECT_EQ(disorderOfTabs(part), "") << name << ", page " << page;
        }
    }

    Player player;
    MainWindow window{player};
    OpenDocument* document = nullptr;
};

TEST_F(Dialogs, haveLettersNamesAndTheOrderOfReading) {
    std::set<std::string> seen;
    QTimer looking; // runs in the dialogs' own loops
    QObject::connect(&looking, &QTimer::timeout, &window, [&] {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* dialog = qobject_cast<QDialog*>(widget);
            if (dialog == nullptr || !dialog->isVisible())
                continue;
            const std::string name = dialog->metaObject()->className();
            if (qobject_cast<QFileDialog*>(dialog) == nullptr && seen.insert(name).second)
                examinePages(*dialog, name + " " + dialog->windowTitle().toStdString());
            dialog->reject();
        }
    });
    looking.start(20);
    for (QAction* action : window.findChildren<QAction*>())
        if (action->isEnabled() && action->text().endsWith(QLatin1String("..."))) {
            action->trigger();
            QTest::qWait(30);
        }
    for (const char* name :
         {"ExportDialog", "VariationsDialog", "WalkthroughDialog", "PackageDialog", "SaverDialog",
          "SnapshotDialog", "ShareDialog", "AccountDialog", "ShortcutList", "CommandList"})
        EXPECT_TRUE(seen.contains(std::string("tarnwick::player::") + name)) << name;
}

// Two controls of a window with the same letter would need several presses.
TEST_F(Dialogs, shareNoLetterOfTheWindowWithPanels) {
    std::set<QString> letters;
    for (const QAction* action : window.menuBar()->actions())
        letters.insert(letterOf(action->text()));
    auto* start = window.findChild<StartPage*>();
    for (QAction* action : window.findChildren<QAction*>())
        if (action->text().remove('&') == "Start page")
            action->trigger();
    ASSERT_TRUE(start->isVisible());
    EXPECT_EQ(doubledLetters(*start, letters), "");
    QTest::keyClick(&window, Qt::Key_Escape);
    auto* findBar = window.findChild<FindBar*>();
    findBar->find();
    examinePages(*findBar, "FindBar", letters);
    for (const QAbstractButton* button : findBar->findChildren<QAbstractButton*>())
        letters.insert(letterOf(button->text()));
    for (QDockWidget* dock : window.findChildren<QDockWidget*>()) {
        dock->show();
        dock->raise();
        examinePages(*dock->widget(), dock->objectName().toStdString(), letters);
    }
}

} // namespace
} // namespace tarnwick::player
