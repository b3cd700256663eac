// Reads addresses and numbers from Open Sound Control packets (OSC 1.0), and writes them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tarnwick {

struct OSC {
    struct Message {
        std::string address;        // UTF-8; begins with "/" if parsed
        std::vector<float> numbers; // the arguments of types f and i, in order

        bool operator==(const Message&) const = default;
    };

    // The messages of a packet in order, including those in up to three nested bundles. Time tags
    // are ignored. Accepts any bytes; never fails: invalid parts are ignored.
    //
    // A message is ignored if its address or its type tags are missing or an argument extends
    // beyond the message, including the padding of a string or blob. Strings, blobs, doubles,
    // 64-bit integers and time tags are skipped. For all other types, including those that OSC 1.0
    // calls nonstandard, no bytes are skipped: a number after a c, r or m is read from the place of
    // that argument. Lengths are unsigned. In an address that is not UTF-8, ill-formed parts become
    // U+FFFD.
    static std::vector<Message> parse(std::span<const std::uint8_t> packet);

    // Writes one message with a float for each number. The address ends at its first NUL, because
    // OSC strings cannot hold one, and its ill-formed parts become U+FFFD. If it begins with "/",
    // parse() returns the same message.
    static std::vector<std::uint8_t> encode(const Message& message);
};

} // namespace tarnwick
