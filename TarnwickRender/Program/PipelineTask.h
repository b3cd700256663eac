// Pipelines of one program that are made at the same time: drivers compile on the calling thread.
#pragma once

#include <future>
#include <thread>
#include <utility>

namespace tarnwick {

// Calls `make` on a thread of its own, or in get() on a machine with one core. get() gives its
// value or throws its error, so the order of get() is the order of errors. What `make` refers to
// must outlive the future, whose destructor waits for the thread.
template <class Make> auto pipelineTask(Make make) {
    const bool hasCores = std::thread::hardware_concurrency() > 1;
    return std::async(hasCores ? std::launch::async : std::launch::deferred, std::move(make));
}

} // namespace tarnwick
