// MIDI bytes: messages, the controls that they compose, and what bound controls move.
#include "fuzz/Input.h"
#include "fuzz/Law.h"
#include "player/Control/ControlRouter.h"
#include "player/Control/MIDIDecoder.h"

#include <array>

using namespace tarnwick;
using namespace tarnwick::fuzz;
using namespace tarnwick::player;

namespace {

const std::vector<ParamDecl> params{{"speed", 0, -1, 2, ""}, {"hue", 0.5f, 0, 1, ""}};

void checkArrival(const ControlArrival& arrival) {
    const auto* control = std::get_if<MIDIControl>(&arrival.source);
    law(control != nullptr && control->channel < 16, "a channel is in its range");
    law(control->number <= mostNumber(control->kind), "a number is in its range");
    for (const float number : arrival.numbers)
        law(number >= 0 && number <= 1, "a position is in [0, 1]");
    for (const std::uint8_t value : arrival.values)
        law(value < 128, "a value has seven bits");
}

void checkMoves(const std::vector<ControlMove>& moves) {
    for (const ControlMove& move : moves)
        if (const auto* change = std::get_if<ParameterMove>(&move.change)) {
            const ParamDecl& param = params[change->name == "speed" ? 0 : 1];
            law(change->name == param.name, "a move is of a declared parameter");
            law(change->value >= param.min && change->value <= param.max,
                "a value is in its range");
        }
}

// A learned binding, with what else a person may choose for it.
void bind(std::vector<Binding>& bindings, const ControlArrival& arrival, Choices& input) {
    static const std::array<ControlTarget, 5> targets{ParameterTarget{"speed"}, SliderTarget{2},
                                                      SliderTarget{9}, TransportAction::toggle,
                                                      TransportAction::speed};
    auto learned = learnedFrom(arrival, input.oneOf(targets), "");
    if (!learned)
        return;
    learned->curve = input.oneOf(curveNames()).one;
    learned->button = input.oneOf(buttonNames()).one;
    learned->encoding = input.oneOf(encodingNames()).one;
    learned->output = {input.share(), input.share()};
    addLearned(bindings, *learned);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Choices input(bytes, size);
    MIDIDecoder decoder;
    ControlRouter router;
    std::vector<Binding> bindings;
    double time = 0;
    router.setPickup(input.flag());
    while (!input.isOver()) {
        time += input.byte() / 1000.0;
        std::vector<std::uint8_t> message(input.below(5));
        for (std::uint8_t& byte : message)
            byte = input.byte();
        for (const ControlArrival& arrival : decoder.read(message, time)) {
            checkArrival(arrival);
            if (bindings.size() < 8 && input.flag()) {
                bind(bindings, arrival, input);
                router.setBindings(bindings);
            }
            checkMoves(router.route(arrival, {.title = "e", .params = params, .values = {}}));
        }
    }
    return 0;
}
