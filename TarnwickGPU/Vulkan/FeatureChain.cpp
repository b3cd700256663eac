#include "TarnwickGPU/Vulkan/FeatureChain.h"

#include <utility>

namespace tarnwick::gpu {

FeatureChain::FeatureChain(const OptionalRecords& records)
    : core{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_FEATURES_2, .pNext = &vulkan11},
      vulkan11{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_1_FEATURES, .pNext = &vulkan12},
      vulkan12{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_2_FEATURES, .pNext = &vulkan13},
      vulkan13{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_FEATURES, .pNext = nullptr},
      robustness2{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_ROBUSTNESS_2_FEATURES_EXT},
      atomicFloat{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_SHADER_ATOMIC_FLOAT_FEATURES_EXT},
      instanceRates{.sType =
                        VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VERTEX_ATTRIBUTE_DIVISOR_FEATURES_EXT},
      imageAtomics{.sType =
                       VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_SHADER_IMAGE_ATOMIC_INT64_FEATURES_EXT},
      feedback{.sType =
                   VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_ATTACHMENT_FEEDBACK_LOOP_LAYOUT_FEATURES_EXT},
      barycentric{.sType =
                      VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_FRAGMENT_SHADER_BARYCENTRIC_FEATURES_KHR},
      interlock{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_FRAGMENT_SHADER_INTERLOCK_FEATURES_EXT} {
    auto add = [this](auto& record) { record.pNext = std::exchange(vulkan13.pNext, &record); };
    if (records.robustness2)
        add(robustness2);
    if (records.atomicFloat)
        add(atomicFloat);
    if (records.instanceRates)
        add(instanceRates);
    if (records.imageAtomics)
        add(imageAtomics);
    if (records.feedback)
        add(feedback);
    if (records.barycentric)
        add(barycentric);
    if (records.interlock)
        add(interlock);
}

} // namespace tarnwick::gpu
