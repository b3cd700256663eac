// Faults that the player survives: a lost device and no device.
#include "player/Window/MainWindow.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>

#include <QTest>

namespace tarnwick::player {
namespace {

constexpr const char* green =
    "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
    "    return float4(0.0, 1.0, 0.0, 1.0);\n"
    "}\n";

bool drawsGreen(Player& player) {
    const auto picture = player.picture().snapshot().get();
    return picture && picture->bytes.at(1) == 255 && picture->bytes.at(2) == 0;
}

TEST(Trouble, isOverOnceALostDeviceIsOpenedAgain) {
    Player player;
    MainWindow window(player);
    window.show();
    OpenDocument* document = player.add(Document(green));
    if (player.device() == nullptr)
        GTEST_SKIP() << player.deviceAbsence();
    ASSERT_TRUE(becomesTrue([&] { return drawsGreen(player); }));
    document->setText(document->document().text() + "// more\n");
    ASSERT_TRUE(becomesTrue([&] { return document->programRevision() == 2; }));
    const auto lost = player.sharedDevice();
    const auto isReopened = [&](const std::shared_ptr<gpu::Device>& before) {
        return player.device() != nullptr && player.sharedDevice() != before;
    };
    lost->lose();
    ASSERT_TRUE(becomesTrue([&] { return isReopened(lost); }));
    EXPECT_TRUE(becomesTrue([&] { return drawsGreen(player); }));
    EXPECT_TRUE(document->document().isModified());

    // The same program again: it waits for an edit.
    ASSERT_TRUE(becomesTrue([&] { return document->programRevision() == 2; }));
    const auto second = player.sharedDevice();
    second->lose();
    ASSERT_TRUE(becomesTrue([&] { return isReopened(second); }));
    ASSERT_TRUE(becomesTrue([&] { return player.trouble().find("twice") != std::string::npos; }));
    document->setText(document->document().text() + "// an edit\n");
    EXPECT_TRUE(becomesTrue([&] { return player.trouble().empty() && drawsGreen(player); }));
}

TEST(Trouble, withoutADeviceTheTextIsEditedAndChecked) {
    qputenv("TARNWICK_DEVICE", "no such device");
    Player player;
    qunsetenv("TARNWICK_DEVICE");
    ASSERT_EQ(player.device(), nullptr);
    EXPECT_NE(player.trouble(), "");
    MainWindow window(player);
    window.show();
    OpenDocument* document = player.add(Document("float4 shade("));
    ASSERT_TRUE(becomesTrue([&] { return document->result() != nullptr; }));
    EXPECT_FALSE(document->result()->findings.empty());
    document->setText(green);
    EXPECT_TRUE(becomesTrue([&] { return document->result()->findings.empty(); }));
}

} // namespace
} // namespace tarnwick::player
