#include "player/Control/MIDIInput.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "player/Control/MIDIDecoder.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

namespace tarnwick::player {

MIDIInput::MIDIInput(Calls calls, double interval)
    : calls_(std::move(calls)), interval_(interval), thread_([this] { run(); }) {}

MIDIInput::~MIDIInput() {
    {
        const std::lock_guard lock(mutex_);
        isOver_ = true;
    }
    wake_.notify_all();
    thread_.join();
}

void MIDIInput::ignore(std::set<std::string> names) {
    const std::lock_guard lock(mutex_);
    ignored_ = std::move(names);
    hasNews_ = true;
    wake_.notify_all();
}

void MIDIInput::run() {
    std::optional<MIDIState> told;
    std::unique_lock lock(mutex_);
    while (!isOver_) {
        hasNews_ = false;
        lock.unlock();
        MIDIState state = look();
        if (state != told)
            calls_.changed(state);
        told = std::move(state);
        lock.lock();
        wake_.wait_for(lock, std::chrono::duration<double>(interval_),
                       [this] { return isOver_ || hasNews_; });
    }
}

MIDIState MIDIInput::look() {
    if (!system_)
        system_ = calls_.system();
    if (!system_)
        return {};
    std::set<std::string> ignored;
    {
        const std::lock_guard lock(mutex_);
        ignored = ignored_;
    }
    const std::vector<std::string> names = system_->names();
    std::erase_if(connections_, [&](const auto& connection) {
        return ignored.contains(connection.first) ||
               std::ranges::find(names, connection.first) == names.end();
    });
    MIDIState state{.hasSystem = true};
    for (const std::string& name : names)
        state.ports.push_back(ignored.contains(name) ? MIDIPortState{.name = name} : opened(name));
    return state;
}

MIDIPortState MIDIInput::opened(const std::string& name) {
    MIDIPortState state{.name = name, .isOpen = true};
    if (connections_.contains(name))
        return state;
    try {
        const auto decoder = std::make_shared<MIDIDecoder>();
        connections_[name] =
            system_->open(name, [this, name, decoder](std::span<const std::uint8_t> bytes) {
                const double now = currentMediaTime();
                for (ControlArrival& arrival : decoder->read(bytes, now)) {
                    arrival.from = name;
                    arrival.time = now;
                    calls_.arrived(std::move(arrival));
                }
            });
    } catch (const MIDIPortError& error) {
        connections_.erase(name);
        return {.name = name, .isOpen = false, .failure = error.what()};
    }
    return state;
}

} // namespace tarnwick::player
