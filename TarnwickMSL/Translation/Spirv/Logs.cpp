#include "TarnwickMSL/Translation/Spirv/Logs.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/Analysis/ValueTracking.h>

namespace tarnwick::msl::spirv {

using namespace llvm;

static constexpr std::uint32_t debugPrintf = 1; // of NonSemantic.DebugPrintf

// DebugPrintf has no signed conversion of 64 bits.
static std::string wideConversion(char conversion) {
    return StringRef("xX").contains(conversion) ? "lx" : "lu";
}

// Metal's format without the lengths of values, which DebugPrintf takes from their types, except of
// 64 bits.
static std::string debugFormat(StringRef format, std::size_t values) {
    std::string text;
    std::size_t conversions = 0;
    while (!format.empty()) {
        StringRef plain = format.take_until([](char c) { return c == '%'; });
        text += plain;
        format = format.drop_front(plain.size());
        if (format.consume_front("%%")) {
            text += "%%";
        } else if (!format.empty()) {
            std::size_t end = format.find_first_not_of("0123456789-+ #.v", 1);
            StringRef flags = format.take_front(end);
            StringRef length = format.drop_front(flags.size()).take_while([](char c) {
                return c == 'h' || c == 'l';
            });
            format = format.drop_front(flags.size() + length.size());
            if (format.empty() || !StringRef("diouxXaAeEfFgG").contains(format.front()))
                throw TranslationError("A log does not have the conversion '" + flags.str() +
                                       length.str() + format.take_front(1).str() + "'.");
            text += flags.str() + (length == "l" ? wideConversion(format.front())
                                                 : std::string(1, format.front()));
            format = format.drop_front();
            ++conversions;
        }
    }
    if (conversions != values)
        throw TranslationError("The format of a log has " + std::to_string(conversions) +
                               " conversions, and the log has " + std::to_string(values) +
                               " values.");
    return text;
}

void writeLogCall(Body& body, StringRef what, const CallInst& call) {
    if (what == "start") {
        StringRef format;
        if (!getConstantStringInfo(call.getArgOperand(0), format))
            throw TranslationError("The format of a log must be known at compile time.");
        body.log = {.format = format.str(), .values = {}};
        return;
    }
    if (what == "value") {
        body.log.values.push_back(body.id(call.getArgOperand(0)));
        return;
    }
    Module& module = body.module;
    Id set = module.debugPrintf();
    Id format = module.text(debugFormat(body.log.format, body.log.values.size()));
    body.emit(spv::Op::OpExtInst, module.type(spv::Op::OpTypeVoid, {}), {set, debugPrintf, format},
              body.log.values);
}

} // namespace tarnwick::msl::spirv
