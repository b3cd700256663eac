#include "TarnwickCore/Live/OSC.h"

#include "TarnwickCore/Text/UTF8.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>
#include <string_view>

namespace tarnwick {
namespace {

constexpr int deepest = 3;             // the number of bundles around an element
constexpr std::size_t bundleHead = 16; // "#bundle" with its NUL, and the time tag
constexpr std::uint64_t alignment = 4;

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint64_t padded(std::uint64_t length) {
    return (length + alignment - 1) / alignment * alignment;
}

// Reads from the beginning of an element. Nothing, or false, if it is too short.
class Reader {
  public:
    explicit Reader(Bytes bytes) : rest_(bytes) {}

    std::size_t remaining() const { return rest_.size(); }

    bool skip(std::uint64_t count) {
        if (count > rest_.size())
            return false;
        rest_ = rest_.subspan(static_cast<std::size_t>(count));
        return true;
    }

    std::optional<std::uint32_t> word() {
        if (rest_.size() < alignment)
            return std::nullopt;
        const std::uint32_t value = std::uint32_t{rest_[0]} << 24 | std::uint32_t{rest_[1]} << 16 |
                                    std::uint32_t{rest_[2]} << 8 | std::uint32_t{rest_[3]};
        rest_ = rest_.subspan(alignment);
        return value;
    }

    std::optional<std::string_view> string() {
        const auto* const start = reinterpret_cast<const char*>(rest_.data());
        const void* const end = rest_.empty() ? nullptr : std::memchr(start, 0, rest_.size());
        if (end == nullptr)
            return std::nullopt;
        const auto length = static_cast<std::size_t>(static_cast<const char*>(end) - start);
        if (!skip(padded(length + 1)))
            return std::nullopt;
        return std::string_view(start, length);
    }

    Bytes take(std::size_t count) {
        const Bytes taken = rest_.first(count);
        rest_ = rest_.subspan(count);
        return taken;
    }

  private:
    Bytes rest_;
};

bool skipBlob(Reader& reader) {
    const std::optional<std::uint32_t> length = reader.word();
    return length && reader.skip(padded(*length));
}

// Reads the argument of type `tag`. False if it extends beyond the message.
bool readArgument(char tag, Reader& reader, std::vector<float>& numbers) {
    switch (tag) {
    case 'f':
    case 'i':
        if (const std::optional<std::uint32_t> word = reader.word()) {
            numbers.push_back(tag == 'f' ? std::bit_cast<float>(*word)
                                         : static_cast<float>(static_cast<std::int32_t>(*word)));
            return true;
        }
        return false;
    case 's':
    case 'S':
        return reader.string().has_value();
    case 'b':
        return skipBlob(reader);
    case 'h':
    case 't':
    case 'd':
        return reader.skip(8);
    default:
        return true;
    }
}

std::optional<OSC::Message> messageIn(Bytes element) {
    Reader reader(element);
    const std::optional<std::string_view> address = reader.string();
    if (!address)
        return std::nullopt;
    const std::optional<std::string_view> tags = reader.string();
    if (!tags || !tags->starts_with(','))
        return std::nullopt;
    OSC::Message message{.address = wellFormedUTF8(*address), .numbers = {}};
    message.numbers.reserve(std::min(tags->size() - 1, reader.remaining() / alignment));
    for (const char tag : tags->substr(1))
        if (!readArgument(tag, reader, message.numbers))
            return std::nullopt;
    return message;
}

void appendElement(Bytes element, int depth, std::vector<OSC::Message>& messages);

void appendBundle(Bytes bundle, int depth, std::vector<OSC::Message>& messages) {
    Reader reader(bundle);
    if (!reader.skip(bundleHead))
        return;
    for (;;) {
        const std::optional<std::uint32_t> size = reader.word();
        if (!size || *size > reader.remaining())
            return;
        appendElement(reader.take(*size), depth + 1, messages);
    }
}

void appendElement(Bytes element, int depth, std::vector<OSC::Message>& messages) {
    if (depth > deepest || element.empty())
        return;
    if (element[0] == '#') {
        appendBundle(element, depth, messages);
    } else if (element[0] == '/') {
        if (std::optional<OSC::Message> message = messageIn(element))
            messages.push_back(*std::move(message));
    }
}

void appendWord(std::vector<std::uint8_t>& bytes, std::uint32_t word) {
    for (const int shift : {24, 16, 8, 0})
        bytes.push_back(static_cast<std::uint8_t>(word >> shift));
}

void appendString(std::vector<std::uint8_t>& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    bytes.resize(padded(bytes.size() + 1));
}

} // namespace

std::vector<OSC::Message> OSC::parse(Bytes packet) {
    std::vector<Message> messages;
    appendElement(packet, 0, messages);
    return messages;
}

std::vector<std::uint8_t> OSC::encode(const Message& message) {
    const std::string address =
        wellFormedUTF8(std::string_view(message.address).substr(0, message.address.find('\0')));
    std::vector<std::uint8_t> bytes;
    appendString(bytes, address);
    appendString(bytes, ',' + std::string(message.numbers.size(), 'f'));
    for (const float number : message.numbers)
        appendWord(bytes, std::bit_cast<std::uint32_t>(number));
    return bytes;
}

} // namespace tarnwick
