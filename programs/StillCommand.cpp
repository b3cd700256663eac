// tarnwick still: one frame of an episode as a PNG file.
#include "TarnwickCore/EpisodeMeta.h"
#include "TarnwickCore/Numbers.h"
#include "TarnwickRender/ShaderRun.h"
#include "TarnwickRender/StillRenderer.h"
#include "programs/Command.h"
#include "programs/Findings.h"
#include "programs/HeldSignals.h"
#include "programs/SourceFile.h"
#include "programs/StepsLine.h"
#include "programs/StillValues.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

namespace tarnwick {
namespace {

struct PixelSize {
    std::int64_t width = 1280, height = 720;
};

PixelSize sizeOf(const Arguments& arguments) {
    const auto given = arguments.value("--size");
    if (!given)
        return {};
    constexpr std::int64_t widest = 16384; // of any device's pictures
    const std::size_t cross = std::min(given->find('x'), given->size());
    const auto width = integerOf(given->substr(0, cross));
    const auto height = integerOf(given->substr(std::min(cross + 1, given->size())));
    auto fits = [](std::optional<std::int64_t> side) {
        return side && *side >= 1 && *side <= widest;
    };
    if (!fits(width) || !fits(height))
        misuse("--size wants WIDTHxHEIGHT, each from 1 to " + std::to_string(widest) +
               " pixels, not " + quoted(*given) + ".");
    return {.width = *width, .height = *height};
}

// Without a time of its own, the one that the episode names.
double timeOf(const Arguments& arguments, std::string_view episode) {
    const auto given = arguments.value("--time");
    if (!given) {
        const double still = EpisodeMeta::parse(episode).still;
        return std::isfinite(still) ? still : EpisodeMeta().still;
    }
    const std::optional<double> time = doubleOf(*given);
    if (!time || !std::isfinite(*time) || *time < 0)
        misuse("--time wants a number of seconds from 0 on, not " + quoted(*given) + ".");
    return *time;
}

// Without a number of its own, the one that a saver of 30 frames a second would have.
std::uint32_t frameOf(const Arguments& arguments, double time) {
    constexpr double greatest = std::numeric_limits<std::uint32_t>::max();
    const auto given = arguments.value("--frame");
    if (!given)
        return static_cast<std::uint32_t>(std::min(time * 30, greatest));
    const auto frame = integerOf(*given);
    if (!frame || static_cast<double>(*frame) > greatest)
        misuse("--frame wants a whole number from 0 to 4294967295, not " + quoted(*given) + ".");
    return static_cast<std::uint32_t>(*frame);
}

std::shared_ptr<const ShaderProgram> programOf(std::string_view path, const std::string& episode,
                                               gpu::Device& device) {
    try {
        return ShaderProgram::compile(episode, device, ShaderProgram::pixelFormat);
    } catch (const ShaderError& error) {
        const std::string findings = findingsText(path, error.diagnostics);
        std::fputs(findings.c_str(), stderr);
        failure(std::string(path) + " does not compile" +
                (findings.empty() ? ": " + error.raw : "."));
    }
}

// All that the command line says, checked before anything is compiled or drawn.
struct Request {
    std::string_view path, out;
    PixelSize size;
    double time = 0; // seconds
    std::uint32_t frame = 0;
    std::string episode; // its text
    ParamValues values;  // at that time
};

Request requestOf(const Arguments& arguments) {
    Request request{.path = arguments.operand("episode"),
                    .out = arguments.value("-o").value_or("")};
    if (request.out.empty())
        misuse("-o OUT.png is missing: where to write the picture.");
    request.size = sizeOf(arguments);
    request.episode = sourceText(request.path);
    request.time = timeOf(arguments, request.episode);
    request.frame = frameOf(arguments, request.time);
    const std::vector<ParamDecl> params = ParamParser::parse(request.episode);
    request.values = settingsOf(arguments.values("--set"), params, request.path);
    if (const auto keysPath = arguments.value("--keys"))
        request.values = keysOf(*keysPath, params).values(request.time, std::move(request.values));
    return request;
}

// The steps of a simulation are numbered in 32 bits.
void checkSteps(const ShaderProgram& program, double time) {
    constexpr std::int64_t last = std::numeric_limits<std::uint32_t>::max();
    if (program.isParticles() && ParticleSimulation::steps(static_cast<float>(time)) > last)
        failure("A particle episode has stills up to " +
                std::to_string(last / ShaderAssembler::stepRate) + " seconds.");
}

Picture pictureOf(const Request& request, const std::shared_ptr<const ShaderProgram>& program,
                  gpu::Device& device) {
    const auto [width, height] = request.size;
    StillNews news;
    std::optional<Picture> picture;
    {
        StepsLine line;
        news.warmed = [&](std::int64_t step, std::int64_t goal) { line.show(step, goal); };
        picture =
            StillRenderer::render(program, device, width, height, static_cast<float>(request.time),
                                  request.frame, request.values, &news);
    }
    if (!picture)
        failure(ShaderRun::absence(*program, device, width, height));
    if (news.hitLoopBudget)
        std::fprintf(stderr,
                     "tarnwick: A loop of %s went on for too long and was ended; the picture may "
                     "lack what it would have drawn.\n",
                     std::string(request.path).c_str());
    return *std::move(picture);
}

Status still(const Arguments& arguments) {
    const Request request = requestOf(arguments);
    const auto device = gpu::Device::systemDefault();
    if (!device)
        failure("There is no device to draw with; tarnwick devices lists them.");
    const auto program = programOf(request.path, request.episode, *device);
    checkSteps(*program, request.time);
    const Picture picture = pictureOf(request, program, *device);
    const HeldSignals whileWriting;
    StillRenderer::writePNG(picture, request.out);
    return Status::done;
}

constexpr std::array<Option, 6> stillOptions{{
    {"-o", "OUT.png", "where to write the picture; always wanted"},
    {"--time", "SECONDS", "of the episode; what its @still says without it, or 10"},
    {"--size", "WxH", "in pixels; 1280x720 without it"},
    {"--set", "NAME=VALUE", "of a parameter; may be repeated"},
    {"--keys", "FILE.json", "keyframes of parameters, which go before --set"},
    {"--frame", "N", "the frame's number; 30 a second without it"},
}};

} // namespace

const Command stillCommand{.name = "still",
                           .operands = "EPISODE",
                           .summary = "Draws one frame of the episode as a PNG file.",
                           .options = stillOptions,
                           .run = still};

} // namespace tarnwick
