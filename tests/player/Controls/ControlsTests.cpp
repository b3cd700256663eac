// The controls of the whole window: names, shortcuts, layout.
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "player/Panels/Scrubber.h"
#include "player/Panels/TransportBar.h"
#include "player/VariationsPanel/VariationsPanel.h"
#include "player/Window/MainWindow.h"
#include "tests/player/Controls/Audit.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QDockWidget>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QSettings>
#include <QTest>
#include <QUrl>
#include <QWindow>
#include <map>

namespace tarnwick::player {
namespace {

constexpr const char* text = "// @param red 0.25 0.0 1.0 How red\n"
                             "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
                             "    return float4(p.red, 0.0, 1.0, 1.0);\n"
                             "}\n";

class Controls : public testing::Test {
  protected:
    Controls() {
        window.show();
        document = player.add(Document(text));
    }

    Player player;
    MainWindow window{player};
    OpenDocument* document;
};

TEST_F(Controls, haveNamesForPeopleWhoDoNotSeeThem) {
    EXPECT_EQ(namelessControls(window), "");
    EXPECT_GT(window.findChildren<QAbstractButton*>().size(), 20);
}

TEST_F(Controls, haveDifferentShortcuts) {
    std::map<QString, QString> owners;
    for (QAction* action : window.findChildren<QAction*>())
        for (const QKeySequence& keys : action->shortcuts()) {
            const auto [place, isNew] = owners.emplace(keys.toString(), action->text());
            EXPECT_TRUE(isNew || place->second == action->text())
                << keys.toString().toStdString() << ": " << place->second.toStdString() << " and "
                << action->text().toStdString();
        }
    EXPECT_GT(owners.size(), 20u);
}

TEST_F(Controls, setTheLoopRange) {
    auto* bar = window.findChild<TransportBar*>();
    const auto seek = [&](double time) {
        document->setTransport(document->transport().paused(0).sought(time, 0));
    };
    seek(4);
    bar->setLoopStart();
    seek(6);
    bar->setLoopEnd();
    EXPECT_EQ(document->transport().loop, (LoopRange{4, 6}));
    seek(2);
    bar->setLoopEnd(); // before the start
    EXPECT_EQ(document->transport().loop, (LoopRange{0, 2}));
    bar->toggleLoop();
    EXPECT_FALSE(document->transport().loop);
    bar->toggleLoop();
    EXPECT_EQ(document->transport().loop, (LoopRange{0, 2}));
    seek(5);
    bar->setLoopStart(); // after the end
    EXPECT_EQ(document->transport().loop->start, 5);
    EXPECT_GT(document->transport().loop->end, 5);
    bar->clearLoop();
    bar->toggleLoop();
    EXPECT_EQ(document->transport().loop->start, 0);
}

TEST_F(Controls, takeAVariationAndUndoIt) {
    auto* panel = window.findChild<VariationsPanel*>();
    window.findChild<QDockWidget*>("variations")->raise();
    auto* grid = panel->findChild<CellGrid*>();
    for (int wait = 0; grid->count() == 0 && wait < 100; ++wait)
        QTest::qWait(20);
    ASSERT_EQ(grid->count(), VariationsPanel::count);
    grid->setCurrentIndex(grid->model()->index(3, 0));
    QTest::keyClick(grid, Qt::Key_Return);
    EXPECT_EQ(document->document().settings().values, grid->cell(3).source.settings.values);
    document->undoSettings();
    EXPECT_TRUE(document->document().settings().values.empty());
    panel->morphTowardsB(); // without snapshots
    EXPECT_TRUE(document->document().settings().values.empty());
    panel->keepA();
    document->setValue("red", 1);
    panel->keepB();
    panel->morphTowardsB();
    EXPECT_NEAR(document->document().settings().values.at("red"), 0.25 + 0.05 * 0.75, 1e-4);
}

TEST_F(Controls, takeSettingsThatAreDropped) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "a.json";
    writeWholeFile(file, R"({"name": "a", "values": {"red": 0.75}, "keys": {"tracks": {}}})");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(file.string()))});
    QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.windowHandle(), &drop);
    EXPECT_TRUE(drop.isAccepted());
    const ParamValues loaded{{"red", 0.75f}};
    EXPECT_TRUE(becomesTrue([&] { return document->document().settings().values == loaded; }));
    EXPECT_EQ(document->document().text(), text);
    document->undoSettings();
    EXPECT_TRUE(document->document().settings().values.empty());
}

TEST_F(Controls, ignoreALayoutThatIsDamaged) {
    window.close();
    const QString file =
        QSettings(QSettings::IniFormat, QSettings::UserScope, "tarnwick", "player").fileName();
    QFile kept(file);
    QByteArray bytes;
    const auto hasDocks = [&] { // it is written in the background
        kept.close();
        bytes = kept.open(QIODevice::ReadWrite) ? kept.readAll() : QByteArray();
        return bytes.contains("docks");
    };
    ASSERT_TRUE(becomesTrue(hasDocks)) << file.toStdString() << bytes.toStdString();
    bytes.replace("docks=", "docks=@ByteArray(\\x1\\x2");
    bytes.replace("geometry=", "geometry=\"nonsense");
    kept.resize(0);
    kept.seek(0);
    kept.write(bytes.left(bytes.size() / 2) + "\xff\xfe[[[");
    kept.close();
    Player another;
    MainWindow second(another);
    second.show();
    another.add(Document(text));
    EXPECT_TRUE(second.findChild<QDockWidget*>("parameters")->isVisible());
    EXPECT_GT(second.width(), 400);
}

} // namespace
} // namespace tarnwick::player
