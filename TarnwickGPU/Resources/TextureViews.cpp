#include "TarnwickGPU/Resources/TextureViews.h"

#include "TarnwickGPU/Vulkan/DeviceRecord.h"
#include "TarnwickGPU/Vulkan/Graveyard.h"
#include "TarnwickGPU/Vulkan/VulkanFormat.h"

#include <algorithm>
#include <array>

namespace tarnwick::gpu {

namespace {

// In the order of the enumeration.
// clang-format off
constexpr std::array<TypeRow, 10> rows{{
    {TextureType::type2D,                 VK_IMAGE_TYPE_2D, VK_IMAGE_VIEW_TYPE_2D},
    {TextureType::type2DMultisample,      VK_IMAGE_TYPE_2D, VK_IMAGE_VIEW_TYPE_2D},
    {TextureType::type1D,                 VK_IMAGE_TYPE_1D, VK_IMAGE_VIEW_TYPE_1D},
    {TextureType::type1DArray,            VK_IMAGE_TYPE_1D, VK_IMAGE_VIEW_TYPE_1D_ARRAY,   true},
    {TextureType::type2DArray,            VK_IMAGE_TYPE_2D, VK_IMAGE_VIEW_TYPE_2D_ARRAY,   true},
    {TextureType::type2DMultisampleArray, VK_IMAGE_TYPE_2D, VK_IMAGE_VIEW_TYPE_2D_ARRAY,   true},
    {TextureType::type3D,                 VK_IMAGE_TYPE_3D, VK_IMAGE_VIEW_TYPE_3D},
    {TextureType::typeCube,               VK_IMAGE_TYPE_2D, VK_IMAGE_VIEW_TYPE_CUBE,       false, true},
    {TextureType::typeCubeArray,          VK_IMAGE_TYPE_2D, VK_IMAGE_VIEW_TYPE_CUBE_ARRAY, true,  true},
    {TextureType::typeTextureBuffer,      VK_IMAGE_TYPE_1D, VK_IMAGE_VIEW_TYPE_1D}, // has no image
}};
// clang-format on

constexpr bool rowsAreInOrder() {
    for (std::size_t row = 0; row < rows.size(); ++row)
        if (static_cast<std::size_t>(rows[row].type) != row)
            return false;
    return true;
}
static_assert(rowsAreInOrder());

// Whether an argument of a shader's shape accepts a texture of the type. A shader reads single
// texels of a cube as those of a 2D array.
bool takes(msl::TextureShape shape, TextureType type) {
    switch (shape) {
    case msl::TextureShape::none:
    case msl::TextureShape::buffer:
        return false;
    case msl::TextureShape::d1:
        return type == TextureType::type1D;
    case msl::TextureShape::d1Array:
        return type == TextureType::type1DArray;
    case msl::TextureShape::d2:
        return type == TextureType::type2D;
    case msl::TextureShape::d2Array:
        return type == TextureType::type2DArray || rowOf(type).isCube;
    case msl::TextureShape::d2Multisample:
        return type == TextureType::type2DMultisample;
    case msl::TextureShape::d2MultisampleArray:
        return type == TextureType::type2DMultisampleArray;
    case msl::TextureShape::d3:
        return type == TextureType::type3D;
    case msl::TextureShape::cube:
        return type == TextureType::typeCube;
    case msl::TextureShape::cubeArray:
        return type == TextureType::typeCubeArray;
    }
    return false;
}

// Atomic operations are on texels of one component.
bool hasFormat(const msl::Resource& resource, PixelFormat format) {
    if (!resource.isAtomic)
        return resource.component == componentOf(format) ||
               resource.component == msl::TextureComponent::none;
    switch (resource.component) {
    case msl::TextureComponent::int_:
        return format == PixelFormat::r32Sint;
    case msl::TextureComponent::uint_:
        return format == PixelFormat::r32Uint;
    case msl::TextureComponent::ulong_:
        return format == PixelFormat::rg32Uint;
    case msl::TextureComponent::none:
    case msl::TextureComponent::float_:
        break;
    }
    return false;
}

bool isSame(const VkImageSubresourceRange& a, const VkImageSubresourceRange& b) {
    return a.baseMipLevel == b.baseMipLevel && a.levelCount == b.levelCount &&
           a.baseArrayLayer == b.baseArrayLayer && a.layerCount == b.layerCount;
}

} // namespace

bool isUsable(const msl::Resource& resource, const TextureDescriptor& descriptor) {
    const TextureUsage& usage = descriptor.usage;
    const bool hasUsage =
        resource.kind == msl::ResourceKind::storageTexture || resource.countsLevels
            ? usage.shaderWrite
            : usage.shaderRead;
    return hasUsage && hasFormat(resource, descriptor.format);
}

const TypeRow& rowOf(TextureType type) {
    return rows[static_cast<std::size_t>(type)];
}

bool TextureViews::start() {
    const TextureDescriptor& descriptor = image_.descriptor;
    const TextureUsage& usage = descriptor.usage;
    if (!usage.shaderRead && !usage.shaderWrite && !usage.renderTarget)
        return true;
    const VkImageViewType type = rowOf(descriptor.type).view;
    whole_ = make(type, image_.wholeRange(), format());
    const bool isPlain = descriptor.mipLevels == 1 && type == VK_IMAGE_VIEW_TYPE_2D;
    if (isPlain)
        attachment_ = whole_;
    else if (usage.renderTarget)
        attachment_ = attachment();
    return whole_ && (!usage.renderTarget || attachment_);
}

void TextureViews::bury(Graveyard& graveyard) {
    graveyard.bury(whole_);
    for (const Made& made : made_)
        graveyard.bury(made.view);
}

VkFormat TextureViews::format() const {
    return vulkanFormat(image_.descriptor.format);
}

VkImageView TextureViews::make(VkImageViewType type, const VkImageSubresourceRange& range,
                               VkFormat format) const {
    const VkImageViewCreateInfo info{.sType = VK_STRUCTURE_TYPE_IMAGE_VIEW_CREATE_INFO,
                                     .image = image_.handle,
                                     .viewType = type,
                                     .format = format,
                                     .subresourceRange = range};
    VkImageView view = VK_NULL_HANDLE;
    if (vkCreateImageView(device_.handle, &info, nullptr, &view) != VK_SUCCESS)
        return VK_NULL_HANDLE;
    return view;
}

VkImageView TextureViews::find(VkImageViewType type, const VkImageSubresourceRange& range,
                               VkFormat format) const {
    std::lock_guard lock(mutex_);
    for (const Made& made : made_)
        if (made.type == type && isSame(made.range, range) && made.format == format)
            return made.view;
    const VkImageView view = make(type, range, format);
    if (view)
        made_.push_back({type, range, format, view});
    return view;
}

VkImageView TextureViews::fromLevel(VkImageViewType type, std::uint32_t level,
                                    VkFormat format) const {
    if (level == 0 && type == rowOf(image_.descriptor.type).view && format == this->format())
        return whole_;
    VkImageSubresourceRange range = image_.wholeRange();
    range.baseMipLevel = level;
    return find(type, range, format);
}

VkImageView TextureViews::forResource(const msl::Resource& resource) const {
    const TextureDescriptor& descriptor = image_.descriptor;
    const TypeRow& type = rowOf(descriptor.type);
    if (!isUsable(resource, descriptor) || !takes(resource.shape, descriptor.type) ||
        resource.level >= descriptor.mipLevels || !image_.handle ||
        (resource.isDepth && !image_.isDepth()))
        return VK_NULL_HANDLE;
    const bool isFlattened = resource.shape == msl::TextureShape::d2Array && type.isCube;
    const bool isWide = resource.component == msl::TextureComponent::ulong_;
    return fromLevel(isFlattened ? VK_IMAGE_VIEW_TYPE_2D_ARRAY : type.view, resource.level,
                     isWide ? VK_FORMAT_R64_UINT : format());
}

VkImageView TextureViews::attachment(std::uint32_t level, std::uint32_t slice) const {
    if (level == 0 && slice == 0 && attachment_)
        return attachment_;
    return find(VK_IMAGE_VIEW_TYPE_2D, {image_.aspect, level, 1, slice, 1}, format());
}

} // namespace tarnwick::gpu
