#include "TarnwickPlatform/Movie/Encoders/HEVCAlphaEncoder.h"
#include "TarnwickPlatform/Movie/Encoders/HEVCLayerPairs.h"
#include "tests/TarnwickPlatform/Movie/HEVCSyntax.h"
#include "tests/TarnwickPlatform/Movie/SmallMovie.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <functional>
#include <random>
#include <sstream>
#include <utility>

namespace tarnwick {
namespace {

using hevctest::Bytes;
using hevctest::Unit;

constexpr std::int64_t width = 98, height = 66; // neither is a multiple of the coding blocks' 8
constexpr std::int64_t frames = 11, interval = 4;

VideoSettings settings() {
    return {.codec = VideoCodec::hevcAlpha,
            .width = width,
            .height = height,
            .framesPerSecond = 30,
            .averageBitRate = 2'000'000,
            .maxKeyFrameInterval = interval};
}

// One of the two encoders of HEVC with alpha, with options of the test's.
std::unique_ptr<LibavEncoder> makeHEVCEncoder(VideoSettings settings, const std::string& options) {
    settings.codec = VideoCodec::hevc;
    return std::make_unique<LibavEncoder>(settings, options);
}

// A sample of a plane at a place of the picture in pixels, [0, 255].
using Drawing = std::function<double(std::size_t plane, double x, double y)>;

std::shared_ptr<PixelBuffer> drawn(const VideoSettings& settings, const Drawing& drawing) {
    PixelBufferPool pool(PixelFormat::ycbcra420, settings.width, settings.height, 1);
    auto made = pool.take();
    for (std::size_t plane = 0; plane < 4; ++plane) {
        const PixelLayout::Plane& shape = made->layout().planes[plane];
        const double scale = static_cast<double>(settings.width) / static_cast<double>(shape.width);
        for (std::int64_t y = 0; y < shape.height; ++y)
            for (std::int64_t x = 0; x < shape.width; ++x)
                made->plane(plane)[y * shape.bytesPerRow + x] =
                    static_cast<std::byte>(std::lround(drawing(
                        plane, static_cast<double>(x) * scale, static_cast<double>(y) * scale)));
    }
    return made;
}

// A disc of colour that moves over nothing, soft at its edge.
std::shared_ptr<PixelBuffer> picture(std::int64_t frame) {
    return drawn(settings(), [frame](std::size_t plane, double x, double y) {
        const double distance = std::hypot(x - 30 - 3 * static_cast<double>(frame), y - 33);
        const double inside = std::clamp((26 - distance) / 12, 0.0, 1.0);
        return plane == 3   ? 255 * inside
               : plane == 0 ? 16 + 180 * inside
                            : 128 + (plane == 1 ? -60 : 70) * inside;
    });
}

Bytes bytesOf(const std::vector<std::byte>& bytes) {
    const auto* from = reinterpret_cast<const std::uint8_t*>(bytes.data());
    return {from, from + bytes.size()};
}

struct Stream {
    Bytes configuration;
    std::vector<VideoPacket> packets;
};

Stream encoded(const std::unique_ptr<VideoEncoder>& encoder) {
    Stream made{.configuration = bytesOf(encoder->configuration())};
    const auto sink = [&](VideoPacket packet) { made.packets.push_back(std::move(packet)); };
    for (std::int64_t frame = 0; frame < frames; ++frame)
        encoder->encode(picture(frame), frame, sink);
    encoder->finish(sink);
    return made;
}

// The pictures of one layer, as a decoder without layers gives them.
std::vector<DecodedPicture> decodedLayer(const Stream& stream, int number) {
    auto sets = hevctest::readConfiguration(stream.configuration).units;
    sets[0].layer = number; // the VPS is for both
    const TemporaryFolder folder;
    std::ofstream file(folder.path() / "layer.hevc", std::ios::binary);
    const auto write = [&](const std::vector<Unit>& units) {
        const Bytes bytes = hevctest::layerStream(units, number);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    };
    write(sets);
    for (const VideoPacket& packet : stream.packets)
        write(hevctest::readSample(bytesOf(packet.bytes)));
    file.close();
    return decodedPictures(folder.path() / "layer.hevc");
}

// How near a layer's luma is to a plane of the sources, in dB, at its worst; 0 if pictures are
// missing.
double fidelity(const Stream& stream, int number, std::size_t plane) {
    const std::vector<DecodedPicture> decoded = decodedLayer(stream, number);
    if (decoded.size() != static_cast<std::size_t>(frames))
        return 0;
    double worst = 1000;
    for (std::int64_t frame = 0; frame < frames; ++frame)
        worst = std::min(worst, likeness(samplesOf(*picture(frame), plane),
                                         decoded[static_cast<std::size_t>(frame)].planes[0], 8));
    return worst;
}

TEST(HEVCAlphaEncoder, describesTwoLayersFieldByField) {
    const Stream stream = encoded(makeHEVCAlphaEncoder(settings()));
    const auto configuration = hevctest::readConfiguration(stream.configuration);
    std::ostringstream text;
    text << "configuration\n" << configuration.fields;
    for (const Unit& unit : configuration.units)
        text << "\nunit " << unit.type << " of layer " << unit.layer << "\n"
             << hevctest::fields(unit);
    std::ifstream file(HEVC_ALPHA_FIELDS);
    std::ostringstream wanted;
    wanted << file.rdbuf();
    EXPECT_EQ(text.str(), wanted.str());
}

TEST(HEVCAlphaEncoder, pairsEachSliceOfColourWithOneOfAlpha) {
    const Stream stream = encoded(makeHEVCAlphaEncoder(settings()));
    ASSERT_EQ(stream.packets.size(), static_cast<std::size_t>(frames));
    const auto sets = hevctest::readConfiguration(stream.configuration).units;
    for (const VideoPacket& packet : stream.packets) {
        auto units = hevctest::readSample(bytesOf(packet.bytes));
        const bool isKeyFrame = packet.frame % interval == 0;
        EXPECT_EQ(packet.isKeyFrame, isKeyFrame);
        ASSERT_EQ(units.size(), isKeyFrame ? 3U : 2U);
        if (isKeyFrame) {
            EXPECT_EQ(units[0].bytes, sets.back().bytes);
            units.erase(units.begin());
        }
        EXPECT_EQ(units[0].type, units[1].type);
        EXPECT_EQ(units[0].type >= 16, isKeyFrame);
        EXPECT_EQ(units[0].layer, 0);
        EXPECT_EQ(units[1].layer, 1);
        EXPECT_TRUE(hevctest::fields(units[0]).ends_with("slice_pic_parameter_set_id 0\n"));
        EXPECT_TRUE(hevctest::fields(units[1]).ends_with("slice_pic_parameter_set_id 15\n"));
    }
}

// A quality near the best by default, a low one as asked for; colour does not follow.
TEST(HEVCAlphaEncoder, givesColourAndAlphaThatDecodeOnTheirOwnInTheQualityAskedFor) {
    const Stream fine = encoded(makeHEVCAlphaEncoder(settings()));
    EXPECT_GT(fidelity(fine, 0, 0), 45);
    EXPECT_GT(fidelity(fine, 1, 3), 45);
    VideoSettings asked = settings();
    asked.alphaQuality = 0.2;
    asked.alpha = AlphaKind::straight;
    const Stream coarse = encoded(makeHEVCAlphaEncoder(asked));
    const double quality = fidelity(coarse, 1, 3);
    EXPECT_GT(quality, 15);
    EXPECT_LT(quality, 40);
    EXPECT_GT(fidelity(coarse, 0, 0), 45);
    const Unit information = hevctest::readConfiguration(coarse.configuration).units.back();
    EXPECT_NE(hevctest::fields(information).find("alpha_channel_use_idc 0\n"), std::string::npos);
}

// What of the pictures changes with the frame, from nothing to everything.
struct ContentRow {
    const char* name;
    double (*value)(std::size_t plane, double x, double y, std::int64_t frame);
};

bool isAlpha(std::size_t plane) {
    return plane == 3;
}

double noise(std::size_t plane, double x, double y, std::int64_t frame) {
    std::minstd_rand random(static_cast<unsigned>(plane + 5 * frame) +
                            1000U * static_cast<unsigned>(x) + 1000000U * static_cast<unsigned>(y));
    random.discard(3);
    return static_cast<double>(random() % 256);
}

double fade(std::int64_t frame) {
    return 16 + 219 * (0.5 + 0.5 * std::sin(static_cast<double>(frame) / 10));
}

double stripes(double x, std::int64_t number) {
    return 128 + 100 * std::sin(x * (0.2 + 0.1 * static_cast<double>(number)));
}

constexpr std::array contentRows{
    ContentRow{"a still", [](auto, double x, double y, auto) { return std::fmod(x * y, 256); }},
    ContentRow{"a gradient", [](auto, double x, auto, auto) { return std::fmod(3 * x, 256); }},
    ContentRow{"noise", noise},
    ContentRow{"a fade of colour", [](auto plane, auto, auto,
                                      auto frame) { return isAlpha(plane) ? 255 : fade(frame); }},
    ContentRow{"a fade of alpha",
               [](auto plane, double x, double y, auto frame) {
                   return isAlpha(plane) ? fade(frame) : noise(plane, x, y, 0);
               }},
    ContentRow{"cuts", [](auto, double x, auto, auto frame) { return stripes(x, frame / 7); }},
    ContentRow{"cuts of alpha",
               [](auto plane, double x, auto, auto frame) {
                   return isAlpha(plane) ? stripes(x, frame / 7) : stripes(x, 0);
               }},
    ContentRow{"a strobe", [](auto, auto, auto, auto frame) { return frame % 2 ? 235.0 : 16.0; }},
    ContentRow{"a flash",
               [](auto, double x, auto, auto frame) { return frame == 17 ? 235 : stripes(x, 0); }},
};

// Whether the frames' order in the stream is that of groups of three B-frames.
bool goesByCount(const std::vector<VideoPacket>& packets) {
    constexpr std::array order{4, 2, 1, 3};
    for (std::size_t at = 0; at + 4 < packets.size(); ++at)
        if (packets[at + 1].frame != order[at % 4] + static_cast<std::int64_t>(at / 4 * 4))
            return false;
    return true;
}

TEST(HEVCAlphaEncoder, pairsPicturesWhateverTheyHold) {
    int irregular = 0;
    for (const auto& [name, value] : contentRows)
        for (const std::int64_t side : {64, 130}) {
            VideoSettings asked = settings();
            asked.width = asked.height = side;
            asked.maxKeyFrameInterval = 60;
            asked.speed = side == 64 ? EncodingSpeed::usual : EncodingSpeed::quick;
            const auto encoder = makeHEVCAlphaEncoder(asked);
            std::vector<VideoPacket> packets;
            const auto sink = [&](VideoPacket packet) { packets.push_back(std::move(packet)); };
            for (std::int64_t frame = 0; frame < 45; ++frame)
                encoder->encode(
                    drawn(asked, [&, draw = value](auto plane, double x,
                                                   double y) { return draw(plane, x, y, frame); }),
                    frame, sink);
            encoder->finish(sink);
            EXPECT_EQ(packets.size(), 45U) << name;
            // A pair that had to be encoded again would have a second key frame.
            EXPECT_EQ(std::ranges::count_if(packets, &VideoPacket::isKeyFrame), 1) << name;
            irregular += goesByCount(packets) ? 0 : 1;
        }
    EXPECT_GT(irregular, 0) << "no content makes libx265 depart from three B-frames";
}

// Rates beyond the main tier are for colours alone to need.
TEST(HEVCAlphaEncoder, takesAnyBitRate) {
    for (const std::int64_t rate : {1, 60'000'000, 800'000'000}) {
        VideoSettings asked = settings();
        asked.averageBitRate = rate;
        EXPECT_EQ(encoded(makeHEVCAlphaEncoder(asked)).packets.size(),
                  static_cast<std::size_t>(frames));
    }
}

// Two plain streams of the same frame types.
struct Layers {
    Stream colour = encoded(makeHEVCEncoder(settings(), options));
    Stream alpha = encoded(makeHEVCEncoder(settings(), options + ":qmin=20"));

    static inline const std::string options = "preset=ultrafast:x265-params=log-level=none\\:info=0"
                                              "\\:b-adapt=0\\:scenecut=0\\:min-keyint=4";
};

hevc::ByteView viewOf(const VideoPacket& packet) {
    return {reinterpret_cast<const std::uint8_t*>(packet.bytes.data()), packet.bytes.size()};
}

std::vector<Bytes> unitsOf(hevc::ByteView stream) {
    std::vector<Bytes> units;
    for (const hevc::ByteView unit : hevc::splitByteStream(stream))
        units.emplace_back(unit.begin(), unit.end());
    return units;
}

TEST(LayeredStream, comesApartAsItWasPutTogether) {
    const Layers plain;
    const hevc::LayeredStream stream(plain.colour.configuration, plain.alpha.configuration,
                                     AlphaKind::straight);
    const auto sets = hevctest::readConfiguration(stream.configuration()).units;
    const auto colourSets = unitsOf(plain.colour.configuration);
    const auto alphaSets = unitsOf(plain.alpha.configuration);
    ASSERT_EQ(sets.size(), 6U);
    EXPECT_EQ(sets[1].bytes, colourSets[1]);
    EXPECT_EQ(sets[3].bytes, colourSets[2]);
    EXPECT_EQ(hevctest::movedBack(sets[2]).bytes, alphaSets[1]);
    EXPECT_EQ(hevctest::movedBack(sets[4]).bytes, alphaSets[2]);
    for (std::size_t at = 0; at < plain.colour.packets.size(); ++at) {
        const hevc::ByteView colour = viewOf(plain.colour.packets[at]);
        const hevc::ByteView alpha = viewOf(plain.alpha.packets[at]);
        const auto units = hevctest::readSample(stream.accessUnit(colour, alpha));
        ASSERT_GE(units.size(), 2U);
        EXPECT_EQ(units[units.size() - 2].bytes, unitsOf(colour).back());
        EXPECT_EQ(hevctest::movedBack(units.back()).bytes, unitsOf(alpha).back());
    }
}

// Frames 0 to 10 of `picture`, key frames every four, all others as `kinds` has them by turns.
Stream encodedAs(LibavEncoder& encoder, const std::string& kinds) {
    Stream made{.configuration = bytesOf(encoder.configuration())};
    const auto sink = [&](VideoPacket packet) { made.packets.push_back(std::move(packet)); };
    for (std::int64_t frame = 0; frame < frames; ++frame) {
        const char kind = kinds[static_cast<std::size_t>(frame)];
        encoder.encodeAs(kind == 'I'   ? PictureKind::intra
                         : kind == 'P' ? PictureKind::predicted
                                       : PictureKind::bidirectional,
                         picture(frame), frame, sink);
    }
    encoder.finish(sink);
    return made;
}

std::unique_ptr<LibavEncoder> layerEncoder() {
    VideoSettings asked = settings();
    asked.maxKeyFrameInterval = 100;
    return makeHEVCEncoder(asked, "forced-idr=1:" + Layers::options);
}

// In the first group the layers disagree from its second picture on, in the second one not at all.
TEST(LayerPairs, encodesAgainWhatDoesNotPairUp) {
    const Stream colour = encodedAs(*layerEncoder(), "IPBBPBIBBPP");
    const Stream alpha = encodedAs(*layerEncoder(), "IPPBBPIBBPP");
    for (const bool isColourFirst : {true, false}) {
        hevc::LayerPairs pairs(
            hevc::LayeredStream(colour.configuration, alpha.configuration, AlphaKind::straight),
            {.colour = layerEncoder, .alpha = layerEncoder});
        Stream stream{.configuration = bytesOf(pairs.configuration())};
        const auto sink = [&](VideoPacket packet) { stream.packets.push_back(std::move(packet)); };
        for (const VideoPacket& packet : isColourFirst ? colour.packets : alpha.packets)
            isColourFirst ? pairs.putColour(packet) : pairs.putAlpha(packet);
        pairs.give(sink);
        EXPECT_TRUE(stream.packets.empty());
        for (const VideoPacket& packet : isColourFirst ? alpha.packets : colour.packets) {
            isColourFirst ? pairs.putAlpha(packet) : pairs.putColour(packet);
            pairs.give(sink);
        }
        pairs.finish(sink);

        std::string order, keyFrames;
        for (const VideoPacket& packet : stream.packets) {
            order += std::to_string(packet.frame) + " ";
            keyFrames += packet.isKeyFrame ? std::to_string(packet.frame) + " " : "";
        }
        EXPECT_EQ(order, "0 1 2 3 4 5 6 9 8 7 10 ");
        EXPECT_EQ(keyFrames, "0 2 6 ");
        EXPECT_GT(fidelity(stream, 0, 0), 38);
        EXPECT_GT(fidelity(stream, 1, 0), 38);
    }
}

TEST(LayerPairs, failsWhereAPictureIsMissing) {
    const Stream colour = encodedAs(*layerEncoder(), "IPBBPBIBBPP");
    hevc::LayerPairs pairs(
        hevc::LayeredStream(colour.configuration, colour.configuration, AlphaKind::straight),
        {.colour = layerEncoder, .alpha = layerEncoder});
    for (const VideoPacket& packet : colour.packets) {
        pairs.putColour(packet);
        if (packet.frame != 7)
            pairs.putAlpha(packet);
    }
    EXPECT_THROW(pairs.finish([](const VideoPacket&) {}), MovieError);
}

TEST(LayeredStream, refusesWhatDoesNotPairUp) {
    const Layers plain;
    const Bytes& sets = plain.colour.configuration;
    const hevc::LayeredStream stream(sets, plain.alpha.configuration, AlphaKind::straight);
    EXPECT_THROW(stream.accessUnit(viewOf(plain.colour.packets[0]), viewOf(plain.alpha.packets[1])),
                 MovieError);
    EXPECT_THROW(hevc::LayeredStream(sets, {}, AlphaKind::straight), MovieError);
    EXPECT_THROW(hevc::LayeredStream(sets, hevc::ByteView(sets).first(40), AlphaKind::straight),
                 MovieError);
    VideoSettings larger = settings();
    larger.width += 32;
    const auto other = makeHEVCEncoder(larger, Layers::options);
    EXPECT_THROW(hevc::LayeredStream(sets, bytesOf(other->configuration()), AlphaKind::straight),
                 MovieError);
}

TEST(HEVCBits, comeBackFromBehindEmulationPrevention) {
    std::minstd_rand random(5);
    for (int round = 0; round < 200; ++round) {
        Bytes payload(random() % 40);
        for (std::uint8_t& byte : payload)
            byte = random() % 3 == 0 ? static_cast<std::uint8_t>(random() % 5) : 0;
        payload.push_back(0x80);                            // trailing bits
        payload.insert(payload.end(), random() % 2 * 2, 0); // cabac_zero_words
        const Bytes escaped = hevc::withEmulationPrevention(payload);
        EXPECT_EQ(hevc::withoutEmulationPrevention(escaped), payload);
        for (std::size_t at = 2; at < escaped.size(); ++at)
            EXPECT_FALSE(escaped[at - 2] == 0 && escaped[at - 1] == 0 && escaped[at] < 3);
        EXPECT_TRUE(escaped.empty() || escaped.back() != 0);
    }
}

TEST(HEVCBits, countByExponentialGolombCodes) {
    hevc::BitWriter writer;
    const std::vector<std::uint32_t> values{0, 1, 2, 3, 14, 15, 254, 255, 65535, 0xfffffffe};
    for (const std::uint32_t value : values)
        writer.exponentialGolomb(value);
    const Bytes bytes = writer.take();
    EXPECT_EQ(bytes[0], 0b1'010'011'0); // 0, 1, 2 and the beginning of 3: table 9-2
    hevc::BitReader reader(bytes);
    for (const std::uint32_t value : values)
        EXPECT_EQ(reader.exponentialGolomb(), value);
    EXPECT_FALSE(reader.pastEnd());
}

} // namespace
} // namespace tarnwick
