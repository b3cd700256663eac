#include "TarnwickPlatform/Movie/HEVC/AlphaLayer.h"

namespace tarnwick::hevc {
namespace {

// Copies the rest of the payload up to its trailing bits, and writes new trailing bits.
void copyRest(BitWriter& to, BitReader& from, ByteView payload) {
    const std::size_t end = bitsBeforeTrailing(payload);
    to.copy(from, end > from.position() ? end - from.position() : 0);
    to.trailingBits();
}

// The three bits after the VPS's id are sps_ext_or_max_sub_layers_minus1 in layer 1 and are not
// changed: they are below 7, so the rest has the layout of layer 0. With one sub-layer, as here,
// the nesting flag takes one bit and profile, tier and level take 96.
std::optional<Bytes> sequenceParameterSet(ByteView payload) {
    BitReader from(payload);
    BitWriter to;
    to.copy(from, 4);
    const std::uint32_t subLayersMinus1 = from.bits(3);
    if (subLayersMinus1 != 0)
        return std::nullopt;
    to.bits(0, 3);
    to.copy(from, 1 + 96);
    if (from.exponentialGolomb() != 0 || from.pastEnd())
        return std::nullopt;
    to.exponentialGolomb(alphaSequenceParameterSetId);
    copyRest(to, from, payload);
    return to.take();
}

std::optional<Bytes> pictureParameterSet(ByteView payload) {
    BitReader from(payload);
    BitWriter to;
    const std::uint32_t id = from.exponentialGolomb();
    const std::uint32_t sequenceId = from.exponentialGolomb();
    if (id != 0 || sequenceId != 0 || from.pastEnd())
        return std::nullopt;
    to.exponentialGolomb(alphaPictureParameterSetId);
    to.exponentialGolomb(alphaSequenceParameterSetId);
    copyRest(to, from, payload);
    return to.take();
}

// first_slice_segment_in_pic_flag, in an IRAP picture no_output_of_prior_pics_flag, then the id.
std::optional<Bytes> slice(const NALUnit& unit) {
    const int before = unit.isIRAP() ? 2 : 1;
    BitReader from(unit.payload);
    BitWriter to;
    to.copy(from, static_cast<std::size_t>(before));
    if (unit.payload.empty() || !from.flag()) // ue(v) of 0 is a one
        return std::nullopt;
    to.exponentialGolomb(alphaPictureParameterSetId);
    to.copy(from, static_cast<std::size_t>(8 - before - 1));
    Bytes moved = to.take();
    moved.insert(moved.end(), unit.payload.begin() + 1, unit.payload.end());
    return moved;
}

std::optional<Bytes> movedPayload(const NALUnit& unit) {
    if (unit.type == nal::sequenceParameterSet)
        return sequenceParameterSet(unit.payload);
    if (unit.type == nal::pictureParameterSet)
        return pictureParameterSet(unit.payload);
    return unit.isSlice() ? slice(unit) : std::nullopt;
}

} // namespace

std::optional<NALUnit> movedToAlphaLayer(const NALUnit& unit) {
    std::optional<Bytes> payload = movedPayload(unit);
    if (unit.layer != 0 || !payload)
        return std::nullopt;
    return NALUnit{unit.type, alphaLayer, unit.temporalIdPlus1, std::move(*payload)};
}

} // namespace tarnwick::hevc
