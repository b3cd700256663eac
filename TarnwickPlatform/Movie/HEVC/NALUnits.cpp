#include "TarnwickPlatform/Movie/HEVC/NALUnits.h"

#include <algorithm>

namespace tarnwick::hevc {
namespace {

// The offset of the next 00 00 01; the end without one.
std::size_t nextStartCode(ByteView stream, std::size_t from) {
    constexpr std::uint8_t startCode[] = {0, 0, 1};
    const auto found = std::search(stream.begin() + static_cast<std::ptrdiff_t>(from), stream.end(),
                                   std::begin(startCode), std::end(startCode));
    return static_cast<std::size_t>(found - stream.begin());
}

} // namespace

std::vector<ByteView> splitByteStream(ByteView stream) {
    std::vector<ByteView> units;
    std::size_t start = nextStartCode(stream, 0);
    while (start < stream.size()) {
        const std::size_t next = nextStartCode(stream, start + 3);
        ByteView unit = stream.subspan(start + 3, next - start - 3);
        // Zeros before the next start code belong to no unit; no unit ends in a zero.
        while (!unit.empty() && unit.back() == 0)
            unit = unit.first(unit.size() - 1);
        if (!unit.empty())
            units.push_back(unit);
        start = next;
    }
    return units;
}

int typeOf(ByteView unit) {
    return unit.empty() ? 63 : unit[0] >> 1 & 63;
}

std::optional<NALUnit> readNALUnit(ByteView unit) {
    if (unit.size() < 2)
        return std::nullopt;
    BitReader header(unit);
    header.bits(1);
    NALUnit read;
    read.type = static_cast<int>(header.bits(6));
    read.layer = static_cast<int>(header.bits(6));
    read.temporalIdPlus1 = static_cast<int>(header.bits(3));
    read.payload = withoutEmulationPrevention(unit.subspan(2));
    return read;
}

Bytes written(const NALUnit& unit) {
    BitWriter header;
    header.bits(0, 1);
    header.bits(static_cast<std::uint32_t>(unit.type), 6);
    header.bits(static_cast<std::uint32_t>(unit.layer), 6);
    header.bits(static_cast<std::uint32_t>(unit.temporalIdPlus1), 3);
    Bytes bytes = header.take();
    const Bytes payload = withEmulationPrevention(unit.payload);
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    return bytes;
}

void appendWithLength(Bytes& sample, ByteView unit) {
    for (int shift = 24; shift >= 0; shift -= 8)
        sample.push_back(static_cast<std::uint8_t>(unit.size() >> shift));
    sample.insert(sample.end(), unit.begin(), unit.end());
}

} // namespace tarnwick::hevc
