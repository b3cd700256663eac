// Performances recorded and replayed in the window.
#include "player/Panels/ParametersPanel.h"
#include "player/Performances/PerformanceFeature.h"
#include "player/Performances/PerformancesPanel.h"
#include "player/Window/MainWindow.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

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

} // namespace
} // namespace tarnwick::player
