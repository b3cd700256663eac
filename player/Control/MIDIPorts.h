// The MIDI ports of the system: the ones that can be heard, and connections to them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarnwick::player {

// A port cannot be opened. what() is one sentence.
struct MIDIPortError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Open until it is destroyed.
class MIDIConnection {
  public:
    virtual ~MIDIConnection() = default;
};

// One thread at a time.
class MIDIPorts {
  public:
    // Called with each message, with its status byte, on a thread of the connection.
    using Listener = std::function<void(std::span<const std::uint8_t> bytes)>;

    virtual ~MIDIPorts() = default;
    // The ports that send. Ports with the same name have a number behind it.
    virtual std::vector<std::string> names() = 0;
    // Throws MIDIPortError.
    virtual std::unique_ptr<MIDIConnection> open(const std::string& name, Listener listener) = 0;
};

// The ports of ALSA's sequencer; null on a machine without it.
std::unique_ptr<MIDIPorts> systemMIDIPorts();

} // namespace tarnwick::player
