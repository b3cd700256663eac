// Keys as the panel edits them, without a window.
#include "player/Keys/CurveShape.h"
#include "player/Keys/KeyDrag.h"
#include "player/Keys/KeySteps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace tarnwick::player {
namespace {

using Ease = KeyframeTracks::Ease;

const std::vector<ParamDecl> params{{"a", 0, 0, 1, ""}, {"b", 100, 0, 200, ""}, {"c", 0, 0, 1, ""}};

KeyframeTracks tracksOf(
    std::initializer_list<std::pair<const char*, std::vector<std::pair<double, float>>>> rows) {
    KeyframeTracks tracks;
    for (const auto& [name, keys] : rows)
        for (const auto& [time, value] : keys)
            tracks.set(name, time, value);
    return tracks;
}

KeySelection selectionOf(std::initializer_list<KeyPlace> keys) {
    KeySelection selection;
    for (const KeyPlace& key : keys)
        selection.add(key);
    return selection;
}

// Ascending, and no two keys at one time, as KeyframeTracks promises.
bool isOrderly(const KeyframeTracks& tracks) {
    for (const auto& [name, keys] : tracks.tracks)
        for (std::size_t index = 1; index < keys.size(); ++index)
            if (keys[index].time - keys[index - 1].time < KeyframeTracks::snap)
                return false;
    return true;
}

const KeyframeTracks some = tracksOf({{"a", {{0, 0.5F}, {1, 0.25F}, {2, 1}}}, {"b", {{1, 150}}}});

TEST(KeyEdits, replaceTheKeysThatTheyFallOn) {
    const KeyEdit edit = moved(some, selectionOf({{"a", 0}}), params, {.seconds = 1});
    EXPECT_EQ(edit.tracks, tracksOf({{"a", {{1, 0.5F}, {2, 1}}}, {"b", {{1, 150}}}}));
    EXPECT_EQ(edit.selection, selectionOf({{"a", 1}}));
    const KeyEdit copies =
        moved(some, selectionOf({{"a", 0}}), params, {.seconds = 3}, Originals::kept);
    EXPECT_EQ(copies.tracks.keys("a").size(), 4u);
    EXPECT_EQ(scaled(some, everyKey(some, params), 0, 0.001).tracks.keys("a").size(), 1u);
    EXPECT_EQ(scaled(some, everyKey(some, params), 0, 0.001).tracks.keys("a")[0].value, 1);
}

TEST(KeyEdits, stayInTheRangesAndKeepTheShape) {
    const KeySelection both = selectionOf({{"a", 1}, {"b", 1}, {"a", 2}});
    const KeyEdit edit = moved(some, both, params, {.seconds = -5, .share = 0.5});
    EXPECT_EQ(edit.tracks, tracksOf({{"a", {{0, 0.75F}, {1, 1}}}, {"b", {{0, 200}}}}));
    EXPECT_EQ(startingAt(some, both, params, 4).selection,
              selectionOf({{"a", 4}, {"b", 4}, {"a", 5}}));
    EXPECT_EQ(withValue(some, both, params, 7).keys("a")[1].value, 1);
    EXPECT_EQ(withEase(some, both, Ease::hold).keys("b")[0].ease, Ease::hold);
    EXPECT_EQ(withEase(some, both, Ease::hold).keys("a")[0].ease, Ease::smooth);
    EXPECT_EQ(without(some, both), tracksOf({{"a", {{0, 0.5F}}}}));
    EXPECT_EQ(commonEase(withEase(some, both, Ease::hold), both), Ease::hold);
    EXPECT_EQ(commonEase(withEase(some, both, Ease::hold), everyKey(some, params)), std::nullopt);
}

TEST(KeyEdits, pasteOntoAnotherParameter) {
    const KeySelection two = selectionOf({{"a", 1}, {"a", 2}});
    const CopiedKeys one = copied(some, two);
    EXPECT_EQ(one, tracksOf({{"a", {{0, 0.25F}, {1, 1}}}}));
    const KeyEdit onto = pasted(some, one, params, 1, &params[1]);
    EXPECT_EQ(onto.tracks.keys("b").size(), 2u);
    EXPECT_EQ(onto.tracks.keys("b")[0].value, 50); // at the same position
    EXPECT_EQ(onto.tracks.keys("a").size(), 3u);
    const CopiedKeys all = copied(some, everyKey(some, params));
    const KeyEdit each = pasted(some, all, {params.data(), 1}, 10, &params[2]);
    EXPECT_EQ(each.tracks.keys("a").size(), 6u);
    EXPECT_EQ(each.tracks.keys("b").size(), 1u); // not declared there
    EXPECT_TRUE(each.tracks.keys("c").empty());
}

TEST(KeyEdits, leaveOrderlyTracks) {
    std::mt19937 random(7);
    const auto number = [&](double from, double to) {
        return std::uniform_real_distribution(from, to)(random);
    };
    KeyframeTracks tracks;
    for (int index = 0; index < 60; ++index)
        tracks.set(params[static_cast<std::size_t>(index) % 3].name, number(0, 3), 0.5F);
    for (int round = 0; round < 200; ++round) {
        const double from = number(0, 3);
        const KeySelection selection = keysIn(tracks, params, {from, from + number(0, 1)});
        const KeyMove move{.seconds = number(-1, 1), .share = number(-1, 1)};
        KeyEdit edit = round % 2 == 0 ? moved(tracks, selection, params, move)
                                      : scaled(tracks, selection, from, number(0.3, 2));
        EXPECT_TRUE(isOrderly(edit.tracks));
        EXPECT_EQ(existing(edit.selection, edit.tracks, params), edit.selection);
        EXPECT_EQ(edit.tracks, edit.tracks.fitted(params));
        tracks = std::move(edit.tracks);
    }
}

TEST(KeyDrag, snapsTheGrabbedKey) {
    const KeyDrag drag(some, params, selectionOf({{"a", 0}}), {1.507});
    const auto to = [&](double seconds, Snap snap) {
        return drag.moved(0, {.seconds = seconds}, Originals::moved, snap, 0.05);
    };
    EXPECT_EQ(to(0.97, Snap::on).guide, 1);       // a key
    EXPECT_EQ(to(1.48, Snap::on).seconds, 1.507); // a time that is given
    EXPECT_DOUBLE_EQ(to(0.503, Snap::on).seconds, 0.5);
    EXPECT_FALSE(to(0.503, Snap::on).guide);
    EXPECT_EQ(to(0.503, Snap::off).seconds, 0.503);
    EXPECT_EQ(to(-3, Snap::on).seconds, 0);
    EXPECT_EQ(to(0, Snap::on).edit.tracks, some);
    const KeyDrag two(some, params, selectionOf({{"a", 1}, {"a", 2}}), {});
    EXPECT_EQ(two.scaled(2, 1, 4, Snap::on, 0).edit.selection, selectionOf({{"a", 1}, {"a", 4}}));
    EXPECT_EQ(two.scaled(2, 1, 0, Snap::on, 0).edit.selection.count(), 2u); // a frame apart
}

TEST(KeySteps, goFromKeyToKey) {
    EXPECT_EQ(nextKeyTime(some, params, 0, Direction::forward), 1);
    EXPECT_EQ(nextKeyTime(some, params, 1.001, Direction::back), 0);
    EXPECT_FALSE(nextKeyTime(some, params, 2, Direction::forward));
    std::vector<KeyPlace> way;
    for (auto key = nextKey(some, params, {}, Direction::forward); key;
         key = nextKey(some, params, key, Direction::forward))
        way.push_back(*key);
    EXPECT_EQ(way, (std::vector<KeyPlace>{{"a", 0}, {"a", 1}, {"a", 2}, {"b", 1}}));
    EXPECT_EQ(nextKey(some, params, KeyPlace{"b", 1}, Direction::back), (KeyPlace{"a", 2}));
}

TEST(Axis, zoomsAroundAPlaceWithinLimits) {
    const RangeLimits limits{.lowest = 0, .highest = 100, .shortest = 0.1};
    const Range closer = zoomed({10, 20}, 12, 2, limits);
    EXPECT_EQ(closer, (Range{11, 16}));
    EXPECT_EQ(zoomed({0, 10}, 0, 1e-9, limits), (Range{0, 100}));
    EXPECT_NEAR(zoomed({0, 10}, 5, 1e9, limits).length(), 0.1, 1e-12);
    EXPECT_EQ(panned({10, 20}, -50, limits), (Range{0, 10}));
    EXPECT_EQ(framed({10, 20}, 0.1, limits), (Range{9, 21}));
}

TEST(Axis, hasLabelsThatDoNotTouch) {
    for (const double length : {0.1, 0.5, 3.0, 10.0, 77.0, 600.0, 86'400.0}) {
        double last = -1e9;
        int labels = 0;
        for (const RulerMark& mark : timeMarks({{5, 5 + length}, 100, 900}, 60)) {
            if (mark.label.empty())
                continue;
            EXPECT_GE(mark.place - last, 60 - 1e-6) << length;
            last = mark.place;
            ++labels;
        }
        EXPECT_GE(labels, 2) << length;
    }
    const auto close = timeMarks({{1, 2}, 0, 6000}, 60);
    EXPECT_EQ(close.front().label, "0:01");
    EXPECT_EQ(close[1].label, "1"); // a frame
    EXPECT_EQ(valueMarks({{0, 1}, 100, 0}, 40).back().label, "1.0");
}

TEST(CurveShape, hasTheValuesOfTheTracks) {
    KeyframeTracks tracks;
    for (int index = 0; index < 3000; ++index) // many in a pixel
        tracks.set("a", index * 0.01, static_cast<float>(index % 7) / 7,
                   KeyframeTracks::allEases[static_cast<std::size_t>(index) % 3]);
    const Axis close{{3, 3.2}, 0, 500};
    double last = -1;
    for (const CurvePoint& point : curvePoints(tracks, params[0], 0, close, {0, 500})) {
        EXPECT_GE(point.x, last - 1e-9);
        last = point.x;
        const double time = close.at(point.x);
        const double here = *tracks.value("a", time) - point.value;
        const double before = *tracks.value("a", time - 1e-7) - point.value; // a hold
        EXPECT_NEAR(std::min(std::abs(here), std::abs(before)), 0, 1e-3) << point.x;
    }
    // Far away, the points of each pixel reach from its least to its greatest value.
    const auto far = curvePoints(tracks, params[0], 0, {{0, 30}, 0, 300}, {100, 102});
    const auto [least, greatest] = std::ranges::minmax_element(far, {}, &CurvePoint::value);
    EXPECT_EQ(least->value, 0);
    EXPECT_EQ(greatest->value, 6.0F / 7);
    EXPECT_LT(far.size(), 12u);
    // At a hold the curve jumps, exactly at the key.
    const KeyframeTracks held = withEase(some, everyKey(some, params), Ease::hold);
    std::vector<float> atKey;
    for (const CurvePoint& point : curvePoints(held, params[0], 0, {{0, 2}, 0, 301}, {0, 301}))
        if (point.x == 150.5)
            atKey.push_back(point.value);
    EXPECT_EQ(atKey, (std::vector<float>{0.5F, 0.25F}));
    EXPECT_EQ(curvePoints(some, params[2], 0.5F, {{0, 2}, 0, 301}, {0, 301})[1].value, 0.5F);
}

} // namespace
} // namespace tarnwick::player
