#include "TarnwickPlatform/Text/SpectrumPicture.h"

#include "TarnwickPlatform/Text/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace tarnwick {
namespace {

using Color = std::array<float, 3>; // blue, green, red in [0, 255]

constexpr float ground = 0x16, line = 0x90; // of blue, green and red
constexpr std::uint32_t tick = 5;           // pixels
constexpr double points = 12;               // of the labels
constexpr double labelWidth = 72, labelHeight = 18;
constexpr std::size_t longestLabel = 9; // characters of a label of time; longer ones are left out

// The colours of values evenly spaced from 0 to 1.
constexpr std::array<Color, 5> ramp{
    {{8, 4, 4}, {110, 20, 60}, {90, 50, 190}, {40, 150, 250}, {220, 250, 255}}};

Color colorOf(float value) {
    const float at = std::clamp(value, 0.0f, 1.0f) * (ramp.size() - 1);
    const std::size_t below = std::min(static_cast<std::size_t>(at), ramp.size() - 2);
    const float part = at - static_cast<float>(below);
    Color color{};
    for (std::size_t channel = 0; channel < color.size(); ++channel)
        color[channel] = std::lerp(ramp[below][channel], ramp[below + 1][channel], part);
    return color;
}

void fill(Picture& picture, std::uint32_t x, std::uint32_t y, std::uint32_t width,
          std::uint32_t height, const Color& color) {
    for (std::uint32_t row = y; row < y + height; ++row)
        for (std::uint32_t column = x; column < x + width; ++column) {
            std::uint8_t* pixel = &picture.bytes[row * picture.bytesPerRow + column * 4];
            for (std::size_t channel = 0; channel < color.size(); ++channel)
                pixel[channel] = static_cast<std::uint8_t>(color[channel] + 0.5f);
        }
}

// Divides `pixels` into `parts` equal parts: the index of the part of pixel `at`.
std::size_t partAt(std::uint32_t at, std::uint32_t pixels, std::size_t parts) {
    return (2 * std::size_t{at} + 1) * parts / (2 * std::size_t{pixels});
}

void drawValues(Picture& picture, const SpectrumOverTime& spectrum, const SpectrumLayout& layout) {
    const std::size_t moments = spectrum.values.size() / spectrum.bins;
    for (std::uint32_t x = 0; x < layout.plotWidth(); ++x) {
        const float* moment =
            &spectrum.values[partAt(x, layout.plotWidth(), moments) * spectrum.bins];
        for (std::uint32_t y = 0; y < layout.plotHeight(); ++y)
            fill(picture, layout.left + x, layout.top + layout.plotHeight() - 1 - y, 1, 1,
                 colorOf(moment[partAt(y, layout.plotHeight(), spectrum.bins)]));
    }
}

std::string shortest(double number) {
    std::array<char, 32> digits{};
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

void labelFrequency(Picture& picture, const SpectrumOverTime& spectrum,
                    const SpectrumLayout& layout, double hertz) {
    const double up =
        std::log(hertz / spectrum.lowest) / std::log(spectrum.highest / spectrum.lowest);
    if (up < 0 || up > 1)
        return;
    const std::uint32_t y =
        layout.top + static_cast<std::uint32_t>((1 - up) * (layout.plotHeight() - 1));
    fill(picture, layout.left - tick, y, tick, 1, {line, line, line});
    const std::string text =
        hertz < 1000 ? shortest(hertz) + " Hz" : shortest(hertz / 1000) + " kHz";
    drawCenteredText(picture, text, points,
                     {.x = 0,
                      .y = std::max(0.0, y - labelHeight / 2),
                      .width = static_cast<double>(layout.left - tick),
                      .height = labelHeight});
}

void drawFrequencies(Picture& picture, const SpectrumOverTime& spectrum,
                     const SpectrumLayout& layout) {
    // Labels 1, 2 and 5 times powers of ten if there is room, otherwise the powers only.
    const double decade =
        layout.plotHeight() / std::log10(spectrum.highest / spectrum.lowest); // in pixels
    const bool roomy = std::log10(2.0) * decade > labelHeight;
    const double last = std::log10(spectrum.highest);
    for (double power = std::floor(std::log10(spectrum.lowest)); power <= last; ++power)
        for (const double digit : {1.0, 2.0, 5.0})
            if (roomy || digit == 1)
                labelFrequency(picture, spectrum, layout, digit * std::pow(10, power));
}

// The smallest of 1, 2 and 5 times a power of ten that is not below `least`.
double roundStep(double least) {
    const double power = std::pow(10, std::floor(std::log10(least)));
    for (const double digit : {1.0, 2.0, 5.0})
        if (digit * power >= least)
            return digit * power;
    return 10 * power;
}

std::string secondsText(double seconds, double step) {
    const int decimals = std::clamp(static_cast<int>(-std::floor(std::log10(step) + 1e-9)), 0, 9);
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size() - 2, seconds,
                                   std::chars_format::fixed, decimals);
    const std::string text = std::string(digits.data(), end.ptr) + " s";
    return end.ec == std::errc() && text.size() <= longestLabel ? text : "";
}

void drawTimes(Picture& picture, const SpectrumOverTime& spectrum, const SpectrumLayout& layout) {
    const double width = layout.plotWidth() - 1;
    const double step = roundStep(spectrum.duration * labelWidth / width);
    const double first = std::ceil(spectrum.start / step);
    // No labels if `start` is so large that steps round to the same number.
    for (int count = 0; count <= width / labelWidth; ++count) {
        const double seconds = (first + count) * step;
        const double right = (seconds - spectrum.start) / spectrum.duration;
        if (!(right >= 0 && right <= 1))
            continue;
        const std::uint32_t x = layout.left + static_cast<std::uint32_t>(right * width);
        fill(picture, x, layout.top + layout.plotHeight(), 1, tick, {line, line, line});
        drawCenteredText(picture, secondsText(seconds, step), points,
                         {.x = x - labelWidth / 2,
                          .y = static_cast<double>(layout.top + layout.plotHeight() + tick),
                          .width = labelWidth,
                          .height = labelHeight});
    }
}

} // namespace

Picture spectrumPicture(const SpectrumOverTime& spectrum, const SpectrumLayout& layout) {
    Picture picture{.width = layout.width,
                    .height = layout.height,
                    .bytesPerRow = std::size_t{layout.width} * 4};
    picture.bytes.resize(picture.bytesPerRow * picture.height);
    fill(picture, 0, 0, layout.width, layout.height, {ground, ground, ground});
    drawValues(picture, spectrum, layout);
    fill(picture, layout.left - 1, layout.top, 1, layout.plotHeight() + 1, {line, line, line});
    fill(picture, layout.left, layout.top + layout.plotHeight(), layout.plotWidth(), 1,
         {line, line, line});
    drawFrequencies(picture, spectrum, layout);
    drawTimes(picture, spectrum, layout);
    return picture;
}

} // namespace tarnwick
