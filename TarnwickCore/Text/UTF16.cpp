#include "TarnwickCore/Text/UTF16.h"

#include <unicode/utf8.h>

#include <cstdint>
#include <cstring>

namespace tarnwick {

UTF16Cursor::Character UTF16Cursor::next() const {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text_.data());
    std::size_t end = byte_;
    UChar32 character = 0;
    U8_NEXT(bytes, end, text_.size(), character);
    return {end - byte_, character > 0xffff ? 2u : 1u};
}

bool UTF16Cursor::nextEightAreASCII() const {
    if (text_.size() - byte_ < 8)
        return false;
    std::uint64_t eight = 0;
    std::memcpy(&eight, text_.data() + byte_, 8);
    return (eight & 0x8080808080808080) == 0;
}

std::size_t UTF16Cursor::unitOf(std::size_t byte) {
    if (byte < byte_)
        byte_ = unit_ = 0;
    while (byte_ < byte) {
        const bool isRun = byte - byte_ >= 8 && nextEightAreASCII();
        const Character step = isRun ? Character{8, 8} : next();
        byte_ += step.bytes;
        unit_ += step.units;
    }
    return unit_;
}

std::size_t UTF16Cursor::byteOf(std::size_t unit) {
    if (unit < unit_)
        byte_ = unit_ = 0;
    while (unit_ < unit && byte_ < text_.size()) {
        const bool isRun = unit - unit_ >= 8 && nextEightAreASCII();
        const Character step = isRun ? Character{8, 8} : next();
        if (unit_ + step.units > unit)
            break;
        byte_ += step.bytes;
        unit_ += step.units;
    }
    return byte_;
}

} // namespace tarnwick
