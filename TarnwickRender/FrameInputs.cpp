#include "TarnwickRender/FrameInputs.h"

namespace tarnwick {

std::vector<const gpu::Texture*> FrameInputs::channels(double) {
    return {};
}

std::vector<double> FrameInputs::timesBefore(double time) {
    constexpr int framesASecond = 60;
    constexpr int framesBefore = 2 * framesASecond; // older levels have decayed by then
    std::vector<double> times;
    for (int frame = framesBefore; frame > 0; --frame)
        if (const double before = time - static_cast<double>(frame) / framesASecond; before >= 0)
            times.push_back(before);
    return times;
}

ShaderInputs FrameInputs::playedInputs(double time, const ParamValues& values) {
    for (const double before : timesBefore(time))
        inputs(before, values);
    return inputs(time, values);
}

} // namespace tarnwick
