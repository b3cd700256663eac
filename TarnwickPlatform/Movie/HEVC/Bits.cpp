#include "TarnwickPlatform/Movie/HEVC/Bits.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <bit>

namespace tarnwick::hevc {

Bytes withoutEmulationPrevention(ByteView bytes) {
    Bytes payload;
    payload.reserve(bytes.size());
    int zeros = 0;
    for (const std::uint8_t byte : bytes) {
        if (zeros == 2 && byte == 3) {
            zeros = 0;
            continue;
        }
        payload.push_back(byte);
        zeros = byte == 0 ? std::min(zeros + 1, 2) : 0;
    }
    return payload;
}

Bytes withEmulationPrevention(ByteView payload) {
    Bytes bytes;
    bytes.reserve(payload.size() + payload.size() / 64 + 1);
    int zeros = 0;
    for (const std::uint8_t byte : payload) {
        if (zeros == 2 && byte <= 3) {
            bytes.push_back(3);
            zeros = 0;
        }
        bytes.push_back(byte);
        zeros = byte == 0 ? zeros + 1 : 0;
    }
    if (zeros > 0)
        bytes.push_back(3);
    return bytes;
}

std::size_t bitsBeforeTrailing(ByteView payload) {
    std::size_t length = payload.size();
    while (length > 0 && payload[length - 1] == 0)
        --length;
    if (length == 0)
        return 0;
    return 8 * length - 1 - static_cast<std::size_t>(std::countr_zero(payload[length - 1]));
}

std::uint32_t BitReader::bits(int count) {
    std::uint32_t value = 0;
    for (; count > 0; --count, ++next) {
        const std::uint8_t byte = next / 8 < bytes.size() ? bytes[next / 8] : std::uint8_t{0};
        value = value << 1 | (byte >> (7 - next % 8) & 1U);
    }
    return value;
}

std::uint32_t BitReader::exponentialGolomb() {
    int zeros = 0;
    while (zeros < 32 && !flag())
        ++zeros;
    return zeros == 32 ? 0 : (1U << zeros) - 1 + bits(zeros);
}

void BitWriter::bits(std::uint32_t value, int count) {
    for (int bit = count - 1; bit >= 0; --bit, ++written) {
        if (written % 8 == 0)
            bytes_.push_back(0);
        const unsigned set = (value >> bit & 1U) << (7 - written % 8);
        bytes_.back() = static_cast<std::uint8_t>(bytes_.back() | set);
    }
}

void BitWriter::exponentialGolomb(std::uint32_t value) {
    precondition(value != ~std::uint32_t{0}, "an exponential-Golomb code is below 2^32 - 1",
                 "value", value);
    const int length = std::bit_width(value + 1);
    bits(0, length - 1);
    bits(value + 1, length);
}

void BitWriter::copy(BitReader& from, std::size_t count) {
    for (; count > 0; --count)
        bits(from.bits(1), 1);
}

void BitWriter::alignWithOnes() {
    while (written % 8 != 0)
        bits(1, 1);
}

void BitWriter::trailingBits() {
    bits(1, 1);
    while (written % 8 != 0)
        bits(0, 1);
}

} // namespace tarnwick::hevc
