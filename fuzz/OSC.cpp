// OSC packets: parsed, mapped to parameters, written and parsed again.
#include "TarnwickCore/Live/OSC.h"

#include "TarnwickCore/Live/ControlMapping.h"
#include "TarnwickCore/Text/UTF8.h"
#include "fuzz/Law.h"

#include <array>
#include <bit>
#include <cstddef>

using namespace tarnwick;
using namespace tarnwick::fuzz;

namespace {

// Compares bits, so that NaN equals itself.
bool sameBits(const OSC::Message& a, const OSC::Message& b) {
    return a.address == b.address &&
           std::equal(a.numbers.begin(), a.numbers.end(), b.numbers.begin(), b.numbers.end(),
                      [](float x, float y) {
                          return std::bit_cast<std::uint32_t>(x) == std::bit_cast<std::uint32_t>(y);
                      });
}

void map(const OSC::Message& message) {
    static const std::array<ParamDecl, 2> params{
        {{"a", 0, -1, 2, ""}, {"speed", 0, -3e38f, 3e38f, ""}}};
    const auto set = ControlMapping::value(message, params);
    if (!set)
        return;
    const ParamDecl& param = params[set->name == "a" ? 0 : 1];
    law(set->name == param.name, "a value belongs to a declared parameter");
    law(set->value >= param.min && set->value <= param.max, "a value is in its range");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::size_t taken = 0;
    for (const OSC::Message& message : OSC::parse({bytes, size})) {
        taken += 8 + 4 * message.numbers.size();
        law(message.address.starts_with('/'), "an address begins with a slash");
        law(message.address == wellFormedUTF8(message.address), "an address is UTF-8");
        const std::vector<std::uint8_t> written = OSC::encode(message);
        law(written.size() % 4 == 0, "a packet has whole words");
        const std::vector<OSC::Message> again = OSC::parse(written);
        law(again.size() == 1 && sameBits(again[0], message), "a written message parses to itself");
        map(message);
    }
    law(taken <= size, "the numbers of a packet fit into its size");
    return 0;
}
