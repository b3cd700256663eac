#include "player/Control/ControlMail.h"

#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

bool isReleased(const ControlArrival& arrival) {
    return !arrival.numbers.empty() &&
           std::ranges::all_of(arrival.numbers, [](float number) { return number == 0; });
}

void replace(ControlArrival& old, ControlArrival next) {
    next.count += old.count;
    next.values.insert(next.values.begin(), old.values.begin(), old.values.end());
    if (next.values.size() > ControlMail::mostValues)
        next.values.erase(next.values.begin(), next.values.end() - ControlMail::mostValues);
    old = std::move(next);
}

} // namespace

void ControlMail::post(ControlArrival arrival) {
    if (add(std::move(arrival)))
        wake_();
}

bool ControlMail::add(ControlArrival arrival) {
    const std::lock_guard lock(mutex_);
    const auto found = waiting_.find(arrival.source);
    if (found == waiting_.end()) {
        if (waiting_.size() == mostControls) {
            ++dropped_;
            return false;
        }
        ControlSource source = arrival.source;
        waiting_.emplace(std::move(source), Waiting{++order_, std::move(arrival)});
        return waiting_.size() == 1;
    }
    Waiting& waiting = found->second;
    if (waiting.release && isReleased(arrival)) {
        replace(*waiting.release, std::move(arrival));
    } else if (isReleased(arrival) && !isReleased(waiting.arrival)) {
        waiting.release = std::move(arrival);
    } else {
        if (waiting.release)
            replace(waiting.arrival, *std::exchange(waiting.release, std::nullopt));
        replace(waiting.arrival, std::move(arrival));
    }
    return false;
}

std::vector<ControlArrival> ControlMail::take() {
    std::map<ControlSource, Waiting> taken;
    {
        const std::lock_guard lock(mutex_);
        taken.swap(waiting_);
        for (auto& [source, waiting] : taken)
            if (waiting.release)
                waiting_.emplace(source, Waiting{++order_, *std::move(waiting.release)});
    }
    std::vector<Waiting> ordered;
    for (auto& [source, waiting] : taken)
        ordered.push_back(std::move(waiting));
    std::ranges::sort(ordered, {}, &Waiting::order);
    std::vector<ControlArrival> arrivals;
    for (Waiting& waiting : ordered)
        arrivals.push_back(std::move(waiting.arrival));
    return arrivals;
}

bool ControlMail::isEmpty() const {
    const std::lock_guard lock(mutex_);
    return waiting_.empty();
}

std::uint64_t ControlMail::dropped() const {
    const std::lock_guard lock(mutex_);
    return dropped_;
}

} // namespace tarnwick::player
