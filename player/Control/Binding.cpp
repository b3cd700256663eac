#include "player/Control/Binding.h"

#include "TarnwickCore/Live/ControlMapping.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::player {
namespace {

constexpr std::array<CaseName<TransportAction>, 7> transports{{
    {TransportAction::toggle, "toggle", "Play or pause"},
    {TransportAction::play, "play", "Play"},
    {TransportAction::pause, "pause", "Pause"},
    {TransportAction::restart, "restart", "Restart"},
    {TransportAction::stepForward, "stepForward", "Step forward"},
    {TransportAction::stepBack, "stepBack", "Step back"},
    {TransportAction::speed, "speed", "Speed of playing"},
}};
constexpr std::array<CaseName<ControlCurve>, 4> curves{{
    {ControlCurve::linear, "linear", "Linear"},
    {ControlCurve::slowStart, "slowStart", "Slow start"},
    {ControlCurve::fastStart, "fastStart", "Fast start"},
    {ControlCurve::smooth, "smooth", "Smooth"},
}};
constexpr std::array<CaseName<ButtonMode>, 2> buttons{{
    {ButtonMode::follow, "follow", "Follow"},
    {ButtonMode::toggle, "toggle", "Toggle"},
}};
constexpr std::array<CaseName<MIDIControl::Kind>, 8> kinds{{
    {MIDIControl::Kind::controller, "controller", "Controller"},
    {MIDIControl::Kind::note, "note", "Note"},
    {MIDIControl::Kind::pitchBend, "pitchBend", "Pitch bend"},
    {MIDIControl::Kind::program, "program", "Program change"},
    {MIDIControl::Kind::pressure, "pressure", "Channel pressure"},
    {MIDIControl::Kind::controller14, "controller14", "Controller, 14 bits"},
    {MIDIControl::Kind::registered, "registered", "RPN"},
    {MIDIControl::Kind::nonRegistered, "nonRegistered", "NRPN"},
}};
constexpr std::array<CaseName<MIDIEncoding>, 4> encodings{{
    {MIDIEncoding::absolute, "absolute", "Positions"},
    {MIDIEncoding::twosComplement, "twosComplement", "Steps: two's complement (1, 127)"},
    {MIDIEncoding::signedBit, "signedBit", "Steps: sign bit (1, 65)"},
    {MIDIEncoding::binaryOffset, "binaryOffset", "Steps: binary offset (65, 63)"},
}};

int stepOf(MIDIEncoding encoding, int value) {
    switch (encoding) {
    case MIDIEncoding::absolute:
        return 0;
    case MIDIEncoding::twosComplement:
        return value < 64 ? value : value - 128;
    case MIDIEncoding::signedBit:
        return value < 64 ? value : 64 - value;
    case MIDIEncoding::binaryOffset:
        return value - 64;
    }
    return 0;
}

float curved(ControlCurve curve, float position) {
    switch (curve) {
    case ControlCurve::linear:
        return position;
    case ControlCurve::slowStart:
        return position * position;
    case ControlCurve::fastStart:
        return 1 - (1 - position) * (1 - position);
    case ControlCurve::smooth:
        return position * position * (3 - 2 * position);
    }
    return position;
}

std::string label(const ParameterTarget& target) {
    return target.name;
}
std::string label(const SliderTarget& target) {
    return "Slider " + std::to_string(target.number);
}
std::string label(TransportAction action) {
    const auto found = std::ranges::find(transports, action, &CaseName<TransportAction>::one);
    return found == transports.end() ? "Time" : std::string(found->label);
}

// Whether the controls are both of OSC or both of MIDI.
bool isSameKind(const ControlSource& one, const ControlSource& other) {
    return one.index() == other.index();
}

} // namespace

std::span<const CaseName<TransportAction>> transportNames() {
    return transports;
}
std::span<const CaseName<ControlCurve>> curveNames() {
    return curves;
}
std::span<const CaseName<ButtonMode>> buttonNames() {
    return buttons;
}
std::span<const CaseName<MIDIControl::Kind>> kindNames() {
    return kinds;
}
std::span<const CaseName<MIDIEncoding>> encodingNames() {
    return encodings;
}

std::string labelOf(const ControlTarget& target) {
    return std::visit([](const auto& one) { return label(one); }, target);
}

std::optional<float> inputPosition(const Binding& binding, const ControlArrival& arrival) {
    if (arrival.numbers.empty())
        return 1.0f;
    const auto* osc = std::get_if<OSCControl>(&binding.source);
    const std::size_t index = osc != nullptr ? osc->argument : 0;
    if (index >= arrival.numbers.size() || !std::isfinite(arrival.numbers[index]))
        return std::nullopt;
    const double number = arrival.numbers[index];
    if (osc == nullptr)
        return static_cast<float>(std::clamp(number, 0.0, 1.0));
    const double low = binding.input[0], high = binding.input[1];
    if (low == high)
        return number >= high ? 1.0f : 0.0f;
    return static_cast<float>(std::clamp((number - low) / (high - low), 0.0, 1.0));
}

int stepsOf(MIDIEncoding encoding, std::span<const std::uint8_t> values) {
    int sum = 0;
    for (const std::uint8_t value : values)
        sum += stepOf(encoding, value);
    return sum;
}

bool isRelative(const Binding& binding) {
    const auto* midi = std::get_if<MIDIControl>(&binding.source);
    return binding.encoding != MIDIEncoding::absolute && midi != nullptr &&
           midi->kind == MIDIControl::Kind::controller;
}

float outputPosition(const Binding& binding, float input) {
    const auto [from, to] = binding.output;
    return std::clamp(std::lerp(from, to, curved(binding.curve, input)), 0.0f, 1.0f);
}

float valueAt(const ParamDecl& param, float position) {
    return position >= 1 ? param.max : ControlMapping::valueAt(position, param);
}

float positionOf(const ParamDecl& param, float value) {
    const double length = static_cast<double>(param.max) - param.min;
    const double share = (static_cast<double>(value) - param.min) / length;
    return std::isfinite(share) ? static_cast<float>(std::clamp(share, 0.0, 1.0)) : 0;
}

const ParamDecl* paramOf(const ControlTarget& target, std::span<const ParamDecl> params) {
    if (const auto* named = std::get_if<ParameterTarget>(&target)) {
        const auto found = std::ranges::find(params, named->name, &ParamDecl::name);
        return found == params.end() ? nullptr : &*found;
    }
    const auto* slider = std::get_if<SliderTarget>(&target);
    if (slider == nullptr || slider->number < 1 ||
        static_cast<std::size_t>(slider->number) > params.size())
        return nullptr;
    return &params[static_cast<std::size_t>(slider->number) - 1];
}

std::optional<Binding> learnedFrom(const ControlArrival& arrival, ControlTarget target,
                                   std::string episode) {
    Binding learned{
        .source = arrival.source, .target = std::move(target), .episode = std::move(episode)};
    const auto* midi = std::get_if<MIDIControl>(&arrival.source);
    const float number = arrival.numbers.empty() ? 1 : arrival.numbers[0];
    if (midi != nullptr && midi->kind == MIDIControl::Kind::note && number == 0)
        return std::nullopt;
    if (midi == nullptr && number > 1) // a controller that sends MIDI's numbers over OSC
        learned.input = {0, std::max(number, 127.0f)};
    return learned;
}

void addLearned(std::vector<Binding>& bindings, Binding learned) {
    std::erase_if(bindings, [&](const Binding& old) {
        return old.target == learned.target && old.episode == learned.episode &&
               isSameKind(old.source, learned.source);
    });
    bindings.push_back(std::move(learned));
}

} // namespace tarnwick::player
