// The bits of HEVC's syntax structures: fixed lengths, exponential-Golomb codes, and emulation
// prevention, which keeps start codes out of a NAL unit (Rec. ITU-T H.265, 7.2, 7.3.1.1, 9.2).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace tarnwick::hevc {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

// The raw byte sequence payload of a NAL unit's bytes: without the byte 3 after each two zeros.
Bytes withoutEmulationPrevention(ByteView bytes);

// The reverse. A last zero byte also gets a 3 after it.
Bytes withEmulationPrevention(ByteView payload);

// The number of bits before the stop bit of rbsp_trailing_bits(); 0 without a stop bit.
std::size_t bitsBeforeTrailing(ByteView payload);

// Reads from the highest bit of the first byte on. Reading past the end gives zeros.
class BitReader {
  public:
    // Borrows `bytes`.
    explicit BitReader(ByteView bytes) : bytes(bytes) {}

    std::uint32_t bits(int count); // u(n), count in [0, 32]
    bool flag() { return bits(1) != 0; }
    std::uint32_t exponentialGolomb(); // ue(v); 0 if the code has more than 32 leading zeros

    std::size_t position() const { return next; } // in bits
    bool pastEnd() const { return next > 8 * bytes.size(); }

  private:
    ByteView bytes;
    std::size_t next = 0;
};

// Writes from the highest bit of the first byte on.
class BitWriter {
  public:
    void bits(std::uint32_t value, int count); // u(n): the lowest `count` bits, count in [0, 32]
    void flag(bool value) { bits(value ? 1 : 0, 1); }
    void exponentialGolomb(std::uint32_t value);   // ue(v), value below 2^32 - 1
    void copy(BitReader& from, std::size_t count); // the next `count` bits of `from`
    void alignWithOnes();                          // up to the next byte boundary; none if at one
    void trailingBits(); // rbsp_trailing_bits(): a one, and zeros up to the byte boundary

    std::size_t position() const { return written; } // in bits
    Bytes take() { return std::move(bytes_); }

  private:
    Bytes bytes_;
    std::size_t written = 0;
};

} // namespace tarnwick::hevc
