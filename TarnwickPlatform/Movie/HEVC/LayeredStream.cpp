#include "TarnwickPlatform/Movie/HEVC/LayeredStream.h"

#include "TarnwickPlatform/Movie/HEVC/AlphaLayer.h"
#include "TarnwickPlatform/Movie/MovieError.h"

#include <algorithm>

namespace tarnwick::hevc {
namespace {

// The one NAL unit of `type` in `stream`.
NALUnit onlyUnit(ByteView stream, int type, const char* name) {
    std::optional<NALUnit> found;
    for (const ByteView unit : splitByteStream(stream)) {
        if (typeOf(unit) != type)
            continue;
        if (found)
            throw MovieError(std::string("The HEVC encoder gives more than one ") + name + ".");
        found = readNALUnit(unit);
    }
    if (!found)
        throw MovieError(std::string("The HEVC encoder gives no ") + name + ".");
    return *found;
}

// An encoder's own parameter sets.
struct Sets {
    explicit Sets(ByteView stream)
        : video(onlyUnit(stream, nal::videoParameterSet, "video parameter set")),
          sequence(onlyUnit(stream, nal::sequenceParameterSet, "sequence parameter set")),
          picture(onlyUnit(stream, nal::pictureParameterSet, "picture parameter set")) {}

    NALUnit video, sequence, picture;
};

template <typename Value> const Value& known(const std::optional<Value>& value, const char* what) {
    if (!value)
        throw MovieError(std::string("The HEVC encoder's ") + what + " is of an unknown shape.");
    return *value;
}

std::vector<ByteView> slices(ByteView packet) {
    std::vector<ByteView> units = splitByteStream(packet);
    std::erase_if(units, [](ByteView unit) { return typeOf(unit) > nal::lastSlice; });
    return units;
}

bool beginsWithIDR(const std::vector<ByteView>& units) {
    return !units.empty() &&
           (typeOf(units[0]) == nal::IDRWithRADL || typeOf(units[0]) == nal::IDRWithoutLeading);
}

} // namespace

LayeredStream::LayeredStream(ByteView colourSets, ByteView alphaSets, AlphaKind kind)
    : information(written(alphaChannelInformation(kind))) {
    const Sets colour(colourSets);
    const Sets alpha(alphaSets);
    const auto video = known(readVideoParameterSet(colour.video), "video parameter set");
    const auto format = known(readSequenceParameterSet(colour.sequence), "sequence parameter set");
    auto alphaVideo = known(readVideoParameterSet(alpha.video), "video parameter set");
    auto alphaFormat = known(readSequenceParameterSet(alpha.sequence), "sequence parameter set");
    // Alpha's bit rate is lower, so its level or tier may be lower; those of colour cover it.
    alphaVideo.profileTierLevel = video.profileTierLevel;
    alphaFormat.profileTierLevel = format.profileTierLevel;
    if (video != alphaVideo || format != alphaFormat)
        throw MovieError("The HEVC encoders of colour and alpha disagree about the pictures.");
    const NALUnit sequence = known(movedToAlphaLayer(alpha.sequence), "sequence parameter set");
    const NALUnit picture = known(movedToAlphaLayer(alpha.picture), "picture parameter set");
    configuration_ = decoderConfigurationRecord({
        .format = format,
        .videoParameterSets = {written(videoParameterSetWithAlpha(video, format))},
        .sequenceParameterSets = {written(colour.sequence), written(sequence)},
        .pictureParameterSets = {written(colour.picture), written(picture)},
        .supplementalInformation = {information},
    });
}

bool LayeredStream::pairsUp(ByteView colour, ByteView alpha) const {
    return std::ranges::equal(slices(colour), slices(alpha), {}, typeOf, typeOf);
}

Bytes LayeredStream::accessUnit(ByteView colour, ByteView alpha) const {
    const std::vector<ByteView> colourSlices = slices(colour);
    const std::vector<ByteView> alphaSlices = slices(alpha);
    if (!std::ranges::equal(colourSlices, alphaSlices, {}, typeOf, typeOf))
        throw MovieError("The HEVC encoders of colour and alpha disagree about a picture's kind.");
    Bytes sample;
    sample.reserve(colour.size() + alpha.size() + information.size() + 16);
    if (beginsWithIDR(colourSlices))
        appendWithLength(sample, information);
    for (const ByteView slice : colourSlices)
        appendWithLength(sample, slice);
    for (const ByteView slice : alphaSlices) {
        const std::optional<NALUnit> unit = readNALUnit(slice);
        appendWithLength(sample, written(known(unit ? movedToAlphaLayer(*unit) : unit, "slice")));
    }
    return sample;
}

} // namespace tarnwick::hevc
