// The keys panel in the window, by mouse and keyboard.
#include "player/KeysPanel/CurveView.h"
#include "player/KeysPanel/DopeSheet.h"
#include "player/KeysPanel/KeyRuler.h"
#include "player/KeysPanel/KeysPanel.h"
#include "player/Window/MainWindow.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDockWidget>
#include <QDoubleSpinBox>
#include <QImage>
#include <QPainter>
#include <QTest>
#include <cstdlib>

namespace tarnwick::player {
namespace {

constexpr const char* text = "// @length 10\n"
                             "// @param red 0.25 0.0 1.0 How red\n"
                             "// @param size 3 0 10 How large\n"
                             "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
                             "    return float4(p.red, p.size, 1.0, 1.0);\n"
                             "}\n";

// Smoothed edges may differ a little.
bool isAlike(const QImage& one, const QImage& other) {
    constexpr int most = 24; // of 255
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x) {
            const QColor a = one.pixelColor(x, y), b = other.pixelColor(x, y);
            if (std::abs(a.red() - b.red()) > most || std::abs(a.green() - b.green()) > most ||
                std::abs(a.blue() - b.blue()) > most)
                return false;
        }
    return one.size() == other.size();
}

class Keys : public testing::Test {
  protected:
    Keys() {
        Document made(text);
        KeyframeTracks tracks;
        for (const double time : {1.0, 2.0, 4.0})
            tracks.set("red", time, static_cast<float>(time) / 8);
        tracks.set("size", 2, 5);
        made.setKeys(tracks, "Add keys");
        window.show();
        document = player.add(std::move(made));
        document->setTransport(document->transport().paused(0).sought(0.5, 0));
        auto* dock = window.findChild<QDockWidget*>("keys");
        dock->setFloating(true); // a size of its own
        dock->resize(900, 420);
        dock->show();
        panel = window.findChild<KeysPanel*>();
        sheet = window.findChild<DopeSheet*>();
        curves = window.findChild<CurveView*>();
        QTest::qWait(50);
    }

    const KeyframeTracks& keys() const { return document->document().settings().keys; }
    const KeySelection& selection() { return panel->editor().selection(); }
    QPoint at(double time, int row) const {
        return {static_cast<int>(std::lround(panel->view().axis().placeOf(time))), row * 22 + 11};
    }
    static void drag(QWidget* widget, QPoint from, QPoint to, Qt::KeyboardModifiers keys = {}) {
        QTest::mousePress(widget, Qt::LeftButton, keys, from);
        move(widget, (from + to) / 2, keys);
        move(widget, to, keys);
    }
    static void move(QWidget* widget, QPoint to, Qt::KeyboardModifiers keys) {
        QMouseEvent event(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton,
                          Qt::LeftButton, keys);
        QApplication::sendEvent(widget, &event);
    }
    static void drop(QWidget* widget, QPoint place) {
        QTest::mouseRelease(widget, Qt::LeftButton, {}, place);
    }
    std::vector<double> times(const char* name) const {
        std::vector<double> found;
        for (const auto& key : keys().keys(name))
            found.push_back(key.time);
        return found;
    }

    Player player;
    MainWindow window{player};
    OpenDocument* document;
    KeysPanel* panel;
    DopeSheet* sheet;
    CurveView* curves;
};

// While the episode plays, only what the playhead crosses is painted.
TEST_F(Keys, lookTheSameWhetherAPartIsPaintedOrAll) {
    Settings settings = document->document().settings();
    settings.keys = {};
    settings.keys.set("size", 2, 5);
    settings.keys.set("size", 6, 8);
    document->setSettings(settings, "Keys of one parameter");
    for (QWidget* view : {static_cast<QWidget*>(curves), static_cast<QWidget*>(sheet)}) {
        const QImage all = view->grab().toImage();
        int different = 0;
        for (int left = view->width() / 3; left < view->width() / 2; left += 5) {
            const QRect part(left, 0, 5, view->height());
            QImage again = all;
            QPainter(&again).fillRect(part, Qt::green);
            view->render(&again, part.topLeft(), QRegion(part));
            different += isAlike(again.copy(part), all.copy(part)) ? 0 : 1;
        }
        EXPECT_EQ(different, 0) << view->metaObject()->className();
    }
}

TEST_F(Keys, areSelectedByARectangle) {
    drag(sheet, at(1.5, 0), at(3, 1));
    EXPECT_EQ(selection().count(), 2u);
    EXPECT_TRUE(selection().contains("size", 2));
    drop(sheet, at(3, 1));
    drag(sheet, at(3.5, 0), at(5, 0), Qt::ShiftModifier);
    drop(sheet, at(5, 0));
    EXPECT_EQ(selection().count(), 3u);
    QTest::mouseClick(sheet, Qt::LeftButton, Qt::ControlModifier, at(4, 0));
    EXPECT_EQ(selection().count(), 2u);
    QTest::mouseClick(sheet, Qt::LeftButton, {}, at(6, 0));
    EXPECT_TRUE(selection().isEmpty());
}

TEST_F(Keys, areDraggedOntoTheFramesOfOthersAsOneChange) {
    const KeyframeTracks before = keys();
    drag(sheet, at(4, 0), at(2, 0) + QPoint(3, 0)); // snaps to the key of the other parameter
    EXPECT_EQ(times("red"), (std::vector<double>{1, 2}));
    move(sheet, at(6, 0), {}); // the key that was passed is there again
    EXPECT_EQ(times("red").size(), 3u);
    EXPECT_DOUBLE_EQ(times("red")[2], onFrame(times("red")[2]));
    drop(sheet, at(6, 0));
    document->undoSettings();
    EXPECT_EQ(keys(), before);
    drag(sheet, at(4, 0), at(6, 0));
    QTest::keyClick(sheet, Qt::Key_Escape);
    EXPECT_EQ(keys(), before);
    EXPECT_EQ(document->document().history().undoName(), "Add keys") << "no change of its own";
    drop(sheet, at(6, 0));
    drag(sheet, at(2, 1), at(8, 1), Qt::ControlModifier);
    drop(sheet, at(8, 1));
    EXPECT_EQ(times("size").size(), 2u);
}

TEST_F(Keys, giveTheEndsOfTheLoopTheirTimes) {
    document->setTransport(document->transport().withLoop(LoopRange{1.5, 3}, 0));
    auto* ruler = window.findChild<KeyRuler*>();
    const int y = 4; // above the bar of the selection
    const auto place = [&](double time) { return QPoint(at(time, 0).x(), y); };
    drag(ruler, place(3), place(4) + QPoint(3, 0)); // to the keys there
    drop(ruler, place(4));
    EXPECT_EQ(document->transport().loop, (LoopRange{1.5, 4}));
    drag(ruler, place(1.5), place(6)); // not beyond the other end
    drop(ruler, place(6));
    const LoopRange loop = *document->transport().loop;
    EXPECT_LT(loop.start, loop.end);
    EXPECT_EQ(loop.end, 4);
    EXPECT_DOUBLE_EQ(document->time(), 0.5) << "the playhead is not moved";
}

TEST_F(Keys, takeTheirValuesFromTheCurve) {
    panel->editor().select([] {
        KeySelection one;
        one.add({"red", 2});
        return one;
    }());
    const int top = 12, bottom = curves->height() - 12; // of the range
    const int y = bottom + (top - bottom) / 4;          // 0.25
    const QPoint key(at(2, 0).x(), y);
    drag(curves, key, QPoint(key.x() + 3, top), Qt::ShiftModifier); // along one axis
    drop(curves, QPoint(key.x() + 3, top));
    EXPECT_EQ(times("red")[1], 2);
    EXPECT_NEAR(keys().keys("red")[1].value, 1, 0.02);
    QTest::mouseDClick(curves, Qt::LeftButton, {}, QPoint(at(7, 0).x(), bottom));
    EXPECT_EQ(times("red").size(), 4u);
    EXPECT_NEAR(keys().keys("red")[3].value, 0, 0.02);
}

TEST_F(Keys, areEditedWithoutAMouse) {
    sheet->setFocus();
    QTest::keyClick(sheet, Qt::Key_Right);
    EXPECT_EQ(panel->editor().focus(), (KeyPlace{"red", 1}));
    QTest::keyClick(sheet, Qt::Key_Right);
    QTest::keyClick(sheet, Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(selection().count(), 2u);
    EXPECT_TRUE(
        sheet->accessibleDescription().startsWith("red, key 3 of 3, 0:04.00 f 240, value 0.5"))
        << sheet->accessibleDescription().toStdString();
    QTest::keyClick(sheet, Qt::Key_3);
    EXPECT_EQ(keys().keys("red")[1].ease, KeyframeTracks::Ease::hold);
    for (int step = 0; step < 3; ++step)
        QTest::keyClick(sheet, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_NEAR(times("red")[2], 4 - 3 / 60.0, 1e-9);
    QTest::keyClick(sheet, Qt::Key_C, Qt::ControlModifier);
    QTest::keyClick(sheet, Qt::Key_Down);
    EXPECT_EQ(panel->editor().focus(), (KeyPlace{"size", 2}));
    QTest::keyClick(sheet, Qt::Key_V, Qt::ControlModifier); // onto this parameter
    EXPECT_EQ(times("size"), (std::vector<double>{0.5, 2, 2.5}));
    EXPECT_EQ(keys().keys("size")[0].value, 2.5F);
    QTest::keyClick(sheet, Qt::Key_Delete);
    QTest::keyClick(sheet, Qt::Key_Insert);
    QTest::keyClick(sheet, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(times("size"), (std::vector<double>{2}));
}

TEST_F(Keys, takeExactNumbers) {
    QTest::mouseClick(sheet, Qt::LeftButton, {}, at(2, 0));
    const auto fields = panel->findChildren<QDoubleSpinBox*>();
    const auto enter = [&](const char* name, const char* number) {
        for (QDoubleSpinBox* field : fields)
            if (field->accessibleName() == name) {
                field->setFocus();
                field->selectAll();
                QTest::keyClicks(field, number);
                QTest::keyClick(field, Qt::Key_Return);
            }
    };
    enter("Time of the selected keys", "3.25");
    EXPECT_EQ(times("red"), (std::vector<double>{1, 3.25, 4}));
    enter("Value of the selected keys", "0.125");
    EXPECT_EQ(keys().keys("red")[1].value, 0.125F);
    panel->editor().selectParam();
    enter("Length of the selection", "6");
    EXPECT_EQ(times("red"), (std::vector<double>{1, 5.5, 7}));
    EXPECT_EQ(document->document().history().undoName(), "Scale keys");
}

} // namespace
} // namespace tarnwick::player
