// Waiting in tests that have Qt's event loop. QtMain.cpp has their main function.
#pragma once

#include "tests/Waiting.h"

#include <QElapsedTimer>
#include <QTest>

namespace tarnwick::player {

// Whether `condition` holds within a minute, more with patience, while events are handled.
template <typename Condition> bool becomesTrue(const Condition& condition) {
    const double longestWait = 60000 * patience(); // milliseconds
    QElapsedTimer timer;
    timer.start();
    while (!condition() && static_cast<double>(timer.elapsed()) < longestWait)
        QTest::qWait(5);
    return condition();
}

} // namespace tarnwick::player
