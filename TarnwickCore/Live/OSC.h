// Open Sound Control packets (OSC 1.0): what is read of them here are addresses and numbers.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tarnwick {

struct OSC {
    struct Message {
        std::string address;        // UTF-8; begins with "/" when it was parsed
        std::vector<float> numbers; // the arguments of types f and i, in order

        bool operator==(const Message&) const = default;
    };

    // The messages of a packet, those of bundles in their order (time tags are not waited for),
    // down to bundles in bundles in bundles in bundles. Never fails and takes any bytes: what does
    // not parse is left out.
    //
    // A message is dropped when its address or its type tags are missing or an argument ends past
    // the message, the padding of a string or blob included; it has no numbers of strings, blobs,
    // doubles, 64-bit integers and time tags. Of all other types, also those that OSC 1.0 calls
    // nonstandard, no bytes are skipped: a number after a c, r or m is read from that argument's
    // place. Lengths are unsigned. An address that is no UTF-8 has U+FFFD in place of what is
    // malformed.
    static std::vector<Message> parse(std::span<const std::uint8_t> packet);

    // One message with a float for each number. The address is written up to its first NUL, which
    // OSC's strings cannot hold, and as parse() reads it: well-formed. With "/" at its beginning,
    // parse() gives the message back.
    static std::vector<std::uint8_t> encode(const Message& message);
};

} // namespace tarnwick
