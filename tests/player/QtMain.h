// Waiting in tests that have Qt's event loop. QtMain.cpp has their main function.
#pragma once

#include <QElapsedTimer>
#include <QTest>

namespace tarnwick::player {

// Whether `condition` holds within a minute, while events are handled.
template <typename Condition> bool becomesTrue(const Condition& condition) {
    constexpr int longestWait = 60000; // milliseconds
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < longestWait)
        QTest::qWait(5);
    return condition();
}

} // namespace tarnwick::player
