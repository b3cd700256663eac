// What the user chose for playing from outside, kept as JSON in the user's configuration.
#pragma once

#include "player/Control/Binding.h"

#include <cstdint>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::player {

struct OSCInput {
    bool isOn = false;
    std::uint16_t port = 9000;         // of UDP, at least 1
    std::string address = "127.0.0.1"; // of one network interface; "0.0.0.0": of all, IPv6 too

    bool operator==(const OSCInput&) const = default;
};

struct OSCOutput {
    bool isOn = false;
    std::string host = "127.0.0.1"; // a name or an address
    std::uint16_t port = 9001;

    bool operator==(const OSCOutput&) const = default;
};

struct MIDIChoice {
    bool hasPickup = false;
    std::set<std::string> ignored{}; // names of ports that are not opened

    bool operator==(const MIDIChoice&) const = default;
};

struct ControlSettings {
    std::vector<Binding> bindings{};
    OSCInput input{};
    OSCOutput output{};
    MIDIChoice midi{};

    bool operator==(const ControlSettings&) const = default;
};

// XDG_CONFIG_HOME/tarnwick/control.json (XDG Base Directory Specification 0.8); default: below
// ~/.config.
std::filesystem::path controlFile();

std::string encoded(const ControlSettings& settings);

struct ReadControlSettings {
    ControlSettings settings; // the parts that are valid; the defaults for the others
    bool isDamaged = false;   // some part was not valid
};
// Accepts any bytes; never fails.
ReadControlSettings decoded(std::string_view bytes);

// Settings cannot be written. what() is one sentence.
struct ControlFileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct ControlFile {
    ControlSettings settings{};
    std::string remark{}; // one sentence if the file is damaged or unreadable; empty otherwise
};
// The defaults without a file. Blocks.
ControlFile readControlFile(const std::filesystem::path& file);
// Replaces the file. One that is damaged is kept beside it under another name. Throws
// ControlFileError. Blocks.
void writeControlFile(const std::filesystem::path& file, const ControlSettings& settings);

} // namespace tarnwick::player
