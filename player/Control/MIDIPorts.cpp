#include "player/Control/MIDIPorts.h"

#include <rtmidi/RtMidi.h>

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr const char* clientName = "Tarnwick";
constexpr const char* sequencer = "/dev/snd/seq";

class Connection : public MIDIConnection {
  public:
    Connection(unsigned index, MIDIPorts::Listener listener)
        : listener_(std::move(listener)), input_(RtMidi::LINUX_ALSA, clientName) {
        input_.setErrorCallback([](RtMidiError::Type, const std::string&, void*) {});
        input_.ignoreTypes(true, true, true); // system exclusive, clock, active sensing
        input_.setCallback(&Connection::receive, this);
        input_.openPort(index, "Input");
    }
    bool isOpen() { return input_.isPortOpen(); }

  private:
    static void receive(double, std::vector<unsigned char>* message, void* self) {
        static_cast<Connection*>(self)->listener_(*message);
    }

    MIDIPorts::Listener listener_; // before the input, whose thread calls it
    RtMidiIn input_;
};

// "Keys:Keys MIDI 1 20:0" without the numbers of client and port, which change when a device is
// plugged in again.
std::string stableName(const std::string& name) {
    const std::size_t colon = name.rfind(':'), blank = name.rfind(' ');
    const bool hasNumbers = blank != std::string::npos && colon != std::string::npos &&
                            colon > blank &&
                            name.find_first_not_of("0123456789:", blank + 1) == std::string::npos;
    return hasNumbers ? name.substr(0, blank) : name;
}

class SystemPorts : public MIDIPorts {
  public:
    SystemPorts() : lister_(RtMidi::LINUX_ALSA, clientName) {
        lister_.setErrorCallback([](RtMidiError::Type, const std::string&, void*) {});
    }

    std::vector<std::string> names() override {
        std::vector<std::string> found;
        const unsigned count = lister_.getPortCount();
        for (unsigned index = 0; index < count; ++index) {
            const std::string name = stableName(lister_.getPortName(index));
            std::string numbered = name;
            for (int next = 2; std::ranges::find(found, numbered) != found.end(); ++next)
                numbered = name + " " + std::to_string(next);
            found.push_back(std::move(numbered));
        }
        return found;
    }

    std::unique_ptr<MIDIConnection> open(const std::string& name, Listener listener) override {
        const auto all = names();
        const auto found = std::ranges::find(all, name);
        if (found == all.end())
            throw MIDIPortError("The MIDI port " + name + " is gone.");
        try {
            auto made = std::make_unique<Connection>(static_cast<unsigned>(found - all.begin()),
                                                     std::move(listener));
            if (made->isOpen())
                return made;
        } catch (const RtMidiError&) { // the same sentence
        }
        throw MIDIPortError("The MIDI port " + name + " cannot be opened.");
    }

  private:
    RtMidiIn lister_;
};

} // namespace

std::unique_ptr<MIDIPorts> systemMIDIPorts() {
    // ALSA would print a message of its own without the device.
    if (::access(sequencer, R_OK | W_OK) != 0)
        return nullptr;
    try {
        return std::make_unique<SystemPorts>();
    } catch (const RtMidiError&) {
        return nullptr;
    }
}

} // namespace tarnwick::player
