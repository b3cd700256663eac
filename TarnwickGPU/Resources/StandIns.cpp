#include "TarnwickGPU/Resources/StandIns.h"

#include "TarnwickGPU/Resources/TextureParts.h"

#include <array>
#include <cstring>

namespace tarnwick::gpu {

namespace {

// In the order of msl::TextureShape from `buffer` on.
constexpr std::array types{TextureType::typeTextureBuffer,
                           TextureType::type1D,
                           TextureType::type1DArray,
                           TextureType::type2D,
                           TextureType::type2DArray,
                           TextureType::type2DMultisample,
                           TextureType::type2DMultisampleArray,
                           TextureType::type3D,
                           TextureType::typeCube,
                           TextureType::typeCubeArray};

TextureType typeOf(msl::TextureShape shape) {
    return types[static_cast<std::size_t>(shape) -
                 static_cast<std::size_t>(msl::TextureShape::buffer)];
}

// With four components, since a missing fourth component reads as 1.
PixelFormat formatOf(const msl::Resource& resource) {
    if (resource.isDepth)
        return PixelFormat::depth32Float;
    switch (resource.component) {
    case msl::TextureComponent::int_:
        return resource.isAtomic ? PixelFormat::r32Sint : PixelFormat::rgba8Sint;
    case msl::TextureComponent::uint_:
        return resource.isAtomic ? PixelFormat::r32Uint : PixelFormat::rgba8Uint;
    case msl::TextureComponent::ulong_:
        return PixelFormat::rg32Uint;
    case msl::TextureComponent::none:
    case msl::TextureComponent::float_:
        break;
    }
    return PixelFormat::rgba8Unorm;
}

TextureDescriptor descriptorOf(const msl::Resource& resource) {
    const bool isStorage = resource.kind == msl::ResourceKind::storageTexture;
    const bool isMultisample = resource.shape == msl::TextureShape::d2Multisample ||
                               resource.shape == msl::TextureShape::d2MultisampleArray;
    return {.type = typeOf(resource.shape),
            .format = formatOf(resource),
            .sampleCount = isMultisample ? 4u : 1u,
            .usage = {.shaderRead = !isStorage, .shaderWrite = isStorage},
            .storage = StorageMode::private_};
}

} // namespace

struct StandIns::Made {
    TextureDescriptor descriptor;
    std::unique_ptr<TextureParts> texture;
};

StandIns::StandIns(const DeviceRecord& device, Graveyard& graveyard, Transfers& transfers)
    : device_(device), graveyard_(graveyard), transfers_(transfers) {}
StandIns::~StandIns() = default;

bool StandIns::start() {
    for (BufferMemory* standIn : {&zeros, &scratch}) {
        auto made = makeBufferMemory(device_, standInBytes, MemoryUse::upload);
        if (!made)
            return false;
        std::memset(made->bytes, 0, standInBytes);
        *standIn = *made;
    }
    return true;
}

void StandIns::stop() {
    made_.clear();
    bury(graveyard_, zeros);
    bury(graveyard_, scratch);
}

const TextureParts* StandIns::texture(const msl::Resource& resource) {
    const TextureDescriptor descriptor = descriptorOf(resource);
    std::lock_guard lock(mutex_);
    for (const Made& known : made_)
        if (known.descriptor == descriptor)
            return known.texture.get();
    auto made = TextureParts::make(device_, graveyard_, transfers_, descriptor);
    if (!made)
        return nullptr;
    made_.push_back({descriptor, std::move(made)});
    return made_.back().texture.get();
}

} // namespace tarnwick::gpu
