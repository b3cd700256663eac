// The sizes of pieces for work whose time is given by a model.
#include "TarnwickGPU/Commands/PieceSize.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

namespace tarnwick::tests {

namespace {

using namespace gpu;

constexpr std::uint64_t fewest = 2048, picture = 1920 * 1080;

// Seconds of the piece that has `units` units after the first `begin`.
using Model = std::function<double(std::uint64_t begin, std::uint64_t units)>;

// The seconds of each piece of one frame.
std::vector<double> frame(WorkCost& cost, const Model& model) {
    PieceSize size(cost, fewest);
    std::vector<double> pieces;
    for (std::uint64_t done = 0; done < picture;) {
        const std::uint64_t units = std::min(size.next(pieceSeconds), picture - done);
        pieces.push_back(model(done, units));
        done += units;
        size.took(units, pieces.back(), done == picture);
    }
    return pieces;
}

double longest(const std::vector<double>& pieces) {
    return std::ranges::max(pieces);
}

// The driver compiles the function for each draw: the picture must not wait for that a thousand
// times, and takes few submissions once the time is known. Other programs delay the pieces.
TEST(PieceSize, growsWhereEachPieceHasAFixedTime) {
    for (const double fixed : {0.045, 0.06, 0.3})
        for (std::uint32_t seed = 1; seed <= 50; ++seed) {
            SCOPED_TRACE(testing::Message() << fixed << ", seed " << seed);
            WorkCost cost;
            std::minstd_rand random(seed);
            const Model model = [&](std::uint64_t, std::uint64_t units) {
                const double delay = std::uniform_real_distribution(1.0, 1.5)(random);
                return delay * (fixed + 2e-8 * static_cast<double>(units));
            };
            EXPECT_LE(frame(cost, model).size(), 40u);
            EXPECT_LE(frame(cost, model).size(), 8u);
            cost.forget();
            EXPECT_LE(frame(cost, model).size(), 20u);
            // Later the time is that of the units.
            const Model slower = [](std::uint64_t, std::uint64_t units) {
                return 5e-7 * static_cast<double>(units);
            };
            frame(cost, slower);
            frame(cost, slower);
            EXPECT_LT(longest(frame(cost, slower)), 0.06);
        }
}

// Uniform work has pieces of the wanted time from the second frame on.
TEST(PieceSize, givesEvenWorkEvenPieces) {
    for (const double perUnit : {1e-6, 5e-6, 2e-5}) {
        WorkCost cost;
        const Model model = [&](std::uint64_t begin, std::uint64_t units) {
            const double compiling = begin == 0 && !cost.isKnown() ? 0.4 : 0;
            return compiling + 0.0002 + perUnit * static_cast<double>(units);
        };
        frame(cost, model);
        const std::vector<double> pieces = frame(cost, model);
        EXPECT_LT(longest(pieces), 0.06) << perUnit;
        EXPECT_LT(static_cast<double>(pieces.size()), picture * perUnit / pieceSeconds * 1.1 + 2);
    }
}

// The rows of a picture take ever longer: the first ones tell nothing of the last.
TEST(PieceSize, followsUnitsThatTakeEverLonger) {
    for (const double whole : {0.3, 2.0, 8.0}) {
        WorkCost cost;
        const Model ramp = [&](std::uint64_t begin, std::uint64_t units) {
            const auto until = [](std::uint64_t unit) {
                const double part = static_cast<double>(unit) / picture;
                return part * part;
            };
            return 0.0002 + whole * (until(begin + units) - until(begin));
        };
        for (int number = 0; number < 3; ++number)
            EXPECT_LT(longest(frame(cost, ramp)), 0.11) << whole;
    }
}

// Work too slow for the smallest piece is tried three times at most with twice the units, and an
// even picture is then as before.
TEST(PieceSize, staysSmallForSlowUnits) {
    WorkCost cost;
    const Model slow = [](std::uint64_t, std::uint64_t units) {
        return 1e-4 * static_cast<double>(units);
    };
    std::size_t tried = 0;
    for (int number = 0; number < 6; ++number)
        for (const double seconds : frame(cost, slow)) {
            EXPECT_LT(seconds, 0.42);
            tried += seconds > 0.21 ? 1 : 0;
        }
    EXPECT_EQ(tried, 3u);
    EXPECT_EQ(cost.seconds().fixed, 0);
}

// A quick part of the picture after a slow one looks like a fixed time. What follows is slow again:
// the mistake must not outlast a few pieces.
TEST(PieceSize, correctsAFixedTimeThatWasASlowPart) {
    WorkCost cost;
    const Model stripes = [](std::uint64_t begin, std::uint64_t units) {
        double seconds = 0;
        for (std::uint64_t unit = begin; unit < begin + units; unit += 64)
            seconds += 64 * (unit / 6144 % 2 == 0 ? 5e-5 : 1e-6);
        return seconds;
    };
    double most = 0;
    for (int number = 0; number < 5; ++number)
        most = std::max(most, longest(frame(cost, stripes)));
    EXPECT_LT(most, 0.9);
    EXPECT_LT(longest(frame(cost, stripes)), 0.35);
}

} // namespace

} // namespace tarnwick::tests
