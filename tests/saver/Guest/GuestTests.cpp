#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "saver/Guest/PictureBudget.h"
#include "saver/Guest/PowerSupply.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace tarnwick {
namespace {

TEST(PowerSupply, isTheBatteryOnlyWhileItGivesPower) {
    using Files = std::map<std::string, std::string>;
    const Files battery{{"BAT0/type", "Battery"}, {"BAT0/status", "Discharging"}};
    const Files mouse{
        {"hid/type", "Battery"}, {"hid/status", "Discharging"}, {"hid/scope", "Device"}};
    auto onBattery = [](std::initializer_list<Files> supplies) {
        const TemporaryFolder folder;
        for (const Files& files : supplies)
            for (const auto& [name, text] : files) {
                std::filesystem::create_directories((folder.path() / name).parent_path());
                writeWholeFile(folder.path() / name, text + "\n");
            }
        return runsOnBattery(folder.path());
    };
    EXPECT_TRUE(onBattery({battery}));
    EXPECT_TRUE(onBattery({battery, {{"AC/type", "Mains"}, {"AC/online", "0"}}}));
    EXPECT_FALSE(onBattery({battery, {{"AC/type", "Mains"}, {"AC/online", "1"}}}));
    EXPECT_FALSE(onBattery({{{"BAT0/type", "Battery"}, {"BAT0/status", "Charging"}}}));
    EXPECT_FALSE(onBattery({mouse}));
    EXPECT_FALSE(onBattery({}));
    EXPECT_FALSE(runsOnBattery("/nowhere"));
}

struct Played {
    double used; // cost in all
    double frames;
    double scale; // at the end
};

// A saver of 30 frames per second whose whole picture costs `cost`.
Played played(PictureBudget& budget, double cost, double seconds, double& now) {
    Played run{};
    const double end = now + seconds;
    double due = now;
    while (now < end) {
        const double frame = cost * budget.scale() * budget.scale();
        now += frame;
        run.used += frame;
        ++run.frames;
        budget.spend(frame, now);
        due += 1.0 / 30;
        now = std::max({now, due, now + budget.rest(now)});
    }
    run.scale = budget.scale();
    run.used /= seconds;
    run.frames /= seconds;
    return run;
}

TEST(PictureBudget, keepsTheShareBySizeFirst) {
    for (const double share : {0.25, 0.5, 1.0})
        for (const double cost : {0.001, 0.01, 0.03, 0.06, 0.1, 0.3, 1.0}) {
            double now = 100;
            PictureBudget budget(share, 30);
            played(budget, cost, 5, now); // chooses its size
            const Played run = played(budget, cost, 10, now);
            EXPECT_LE(run.used, share * 1.1) << share << " " << cost;
            if (cost <= 0.9 * share / 30) {
                EXPECT_EQ(run.scale, 1) << share << " " << cost;
            }
            if (cost * 0.32 * 0.32 <= 0.9 * share / 30) {
                EXPECT_GT(run.frames, 28) << share << " " << cost;
            } else {
                EXPECT_EQ(run.scale, PictureBudget::scales.back()) << share << " " << cost;
            }
        }
}

TEST(PictureBudget, growsAgainOnlyAfterAWhile) {
    double now = 100;
    PictureBudget budget(0.5, 30);
    EXPECT_LT(played(budget, 0.1, 5, now).scale, 0.5);
    EXPECT_LT(played(budget, 0.005, 10, now).scale, 0.5);
    EXPECT_EQ(played(budget, 0.005, 30, now).scale, 1);
    budget.setShare(0.1); // on battery now
    EXPECT_LT(played(budget, 0.005, 2, now).scale, 1);
}

} // namespace
} // namespace tarnwick
