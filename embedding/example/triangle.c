/* Draws a triangle of a Metal program with Vulkan 1.3 into a picture, without a window.
 *
 *   cc -std=c11 triangle.c -o triangle $(pkg-config --cflags --libs tarnwick-msl vulkan)
 *   ./triangle triangle.ppm
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <tarnwick/msl.h>
#include <vulkan/vulkan.h>

enum { side = 256 }; /* pixels */

static const char program[] =
    "#include <metal_stdlib>\n"
    "using namespace metal;\n"
    "struct Look { packed_float3 tint; float scale; };\n"
    "struct Corner { float4 position [[position]]; float3 colour; };\n"
    "vertex Corner corner(uint i [[vertex_id]], constant Look& look [[buffer(0)]]) {\n"
    "    const float2 at[] = {{-1, -1}, {1, -1}, {0, 1}};\n"
    "    return {float4(at[i] * look.scale, 0, 1), float3(i == 0, i == 1, i == 2)};\n"
    "}\n"
    "fragment float4 paint(Corner in [[stage_in]], constant Look& look [[buffer(0)]]) {\n"
    "    return float4(in.colour * look.tint, 1);\n"
    "}\n";

/* Ends the process with a sentence if `isGood` is 0. */
static void require(int isGood, const char* what) {
    if (isGood)
        return;
    fprintf(stderr, "%s\n", what);
    exit(1);
}
#define VULKAN(call) require((call) == VK_SUCCESS, "Vulkan fails: " #call)

/* Writes the numbers to the member of the record that the first argument of the program points to. */
static void set(const tarnwick_msl_result* result, char* record, const char* name,
                const float* numbers) {
    tarnwick_msl_record_member member = {sizeof member};
    for (size_t i = 0; tarnwick_msl_result_record_member(result, 0, i, &member); ++i)
        if (strcmp(member.name, name) == 0)
            memcpy(record + member.offset, numbers, member.bytes);
}

static VkDevice device;
static VkPhysicalDeviceMemoryProperties memories;

static VkDeviceMemory memoryFor(VkMemoryRequirements needs, VkMemoryPropertyFlags flags) {
    uint32_t type = 0;
    while (type < memories.memoryTypeCount && (!(needs.memoryTypeBits >> type & 1) ||
           (memories.memoryTypes[type].propertyFlags & flags) != flags))
        ++type;
    require(type < memories.memoryTypeCount, "The device lacks a type of memory.");
    VkDeviceMemory memory;
    VULKAN(vkAllocateMemory(device, &(VkMemoryAllocateInfo){
        VK_STRUCTURE_TYPE_MEMORY_ALLOCATE_INFO, .allocationSize = needs.size,
        .memoryTypeIndex = type}, NULL, &memory));
    return memory;
}

static VkBuffer bufferOf(VkDeviceSize bytes, VkBufferUsageFlags usage, void** contents) {
    VkBuffer buffer;
    VULKAN(vkCreateBuffer(device, &(VkBufferCreateInfo){VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO,
        .size = bytes, .usage = usage}, NULL, &buffer));
    VkMemoryRequirements needs;
    vkGetBufferMemoryRequirements(device, buffer, &needs);
    const VkDeviceMemory memory = memoryFor(needs,
        VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT | VK_MEMORY_PROPERTY_HOST_COHERENT_BIT);
    VULKAN(vkBindBufferMemory(device, buffer, memory, 0));
    VULKAN(vkMapMemory(device, memory, 0, VK_WHOLE_SIZE, 0, contents));
    return buffer;
}

int main(int count, char** words) {
    require(count == 2, "usage: triangle OUT.ppm");

    /* The program. */
    tarnwick_msl_compiler* compiler;
    tarnwick_msl_result* result;
    require(tarnwick_msl_compiler_create(NULL, &compiler) == TARNWICK_MSL_DONE, "No compiler.");
    const tarnwick_msl_status status =
        tarnwick_msl_compile(compiler, NULL, program, strlen(program), &result);
    require(status == TARNWICK_MSL_DONE, tarnwick_msl_result_messages(result));

    /* The device. */
    VkInstance instance;
    VULKAN(vkCreateInstance(&(VkInstanceCreateInfo){VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO,
        .pApplicationInfo = &(VkApplicationInfo){VK_STRUCTURE_TYPE_APPLICATION_INFO,
            .apiVersion = VK_API_VERSION_1_3}}, NULL, &instance));
    uint32_t one = 1;
    VkPhysicalDevice physical;
    require(vkEnumeratePhysicalDevices(instance, &one, &physical) >= 0 && one == 1, "No device.");
    vkGetPhysicalDeviceMemoryProperties(physical, &memories);
    VkPhysicalDeviceVulkan12Features vulkan12 = {
        VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_2_FEATURES, .scalarBlockLayout = VK_TRUE};
    VkPhysicalDeviceVulkan13Features vulkan13 = {
        VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_FEATURES, &vulkan12,
        .synchronization2 = VK_TRUE, .dynamicRendering = VK_TRUE};
    /* The first family of queues draws on every device that draws at all in practice. */
    VULKAN(vkCreateDevice(physical, &(VkDeviceCreateInfo){VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO,
        &vulkan13, .queueCreateInfoCount = 1, .pQueueCreateInfos = &(VkDeviceQueueCreateInfo){
            VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO, .queueCount = 1,
            .pQueuePriorities = &(float){1}}}, NULL, &device));
    VkQueue queue;
    vkGetDeviceQueue(device, 0, 0, &queue);

    /* What the program binds, and its stages. Both stages read the same buffer. */
    VkPipelineShaderStageCreateInfo stages[2];
    VkDescriptorSetLayoutBinding bindings[8];
    uint32_t stageCount = 0, bindingCount = 0;
    tarnwick_msl_entry_point entry = {sizeof entry};
    for (; stageCount < 2 && tarnwick_msl_result_entry_point(result, stageCount, &entry);
         ++stageCount) {
        const VkShaderStageFlagBits stage = entry.stage == TARNWICK_MSL_VERTEX
            ? VK_SHADER_STAGE_VERTEX_BIT : VK_SHADER_STAGE_FRAGMENT_BIT;
        tarnwick_msl_binding binding = {sizeof binding};
        for (size_t i = 0; tarnwick_msl_result_binding(result, stageCount, i, &binding); ++i) {
            require(binding.kind == TARNWICK_MSL_UNIFORM_BUFFER && bindingCount < 8,
                    "The program binds more than a uniform buffer.");
            bindings[bindingCount++] = (VkDescriptorSetLayoutBinding){
                binding.binding, VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER, 1, stage, NULL};
        }
        VkShaderModule module;
        VULKAN(vkCreateShaderModule(device, &(VkShaderModuleCreateInfo){
            VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO, .codeSize = entry.word_count * 4,
            .pCode = entry.words}, NULL, &module));
        stages[stageCount] = (VkPipelineShaderStageCreateInfo){
            VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO, .stage = stage, .module = module,
            .pName = "main"};
    }
    tarnwick_msl_record record = {sizeof record};
    require(tarnwick_msl_result_record(result, 0, &record), "No record.");
    void* look;
    const VkBuffer looks = bufferOf(record.bytes, VK_BUFFER_USAGE_UNIFORM_BUFFER_BIT, &look);
    set(result, look, "tint", (float[]){1, 0.8f, 0.6f});
    set(result, look, "scale", &(float){0.8f});

    VkDescriptorSetLayout setLayout;
    VULKAN(vkCreateDescriptorSetLayout(device, &(VkDescriptorSetLayoutCreateInfo){
        VK_STRUCTURE_TYPE_DESCRIPTOR_SET_LAYOUT_CREATE_INFO, .bindingCount = bindingCount,
        .pBindings = bindings}, NULL, &setLayout));
    VkDescriptorPool pool;
    VULKAN(vkCreateDescriptorPool(device, &(VkDescriptorPoolCreateInfo){
        VK_STRUCTURE_TYPE_DESCRIPTOR_POOL_CREATE_INFO, .maxSets = 1, .poolSizeCount = 1,
        .pPoolSizes = &(VkDescriptorPoolSize){VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER, bindingCount}},
        NULL, &pool));
    VkDescriptorSet descriptors;
    VULKAN(vkAllocateDescriptorSets(device, &(VkDescriptorSetAllocateInfo){
        VK_STRUCTURE_TYPE_DESCRIPTOR_SET_ALLOCATE_INFO, .descriptorPool = pool,
        .descriptorSetCount = 1, .pSetLayouts = &setLayout}, &descriptors));
    for (uint32_t i = 0; i < bindingCount; ++i)
        vkUpdateDescriptorSets(device, 1, &(VkWriteDescriptorSet){
            VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET, .dstSet = descriptors,
            .dstBinding = bindings[i].binding, .descriptorCount = 1,
            .descriptorType = VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER,
            .pBufferInfo = &(VkDescriptorBufferInfo){looks, 0, VK_WHOLE_SIZE}}, 0, NULL);

    /* The pipeline. In Metal y points up, so the viewport has a negative height. */
    const VkFormat format = VK_FORMAT_R8G8B8A8_UNORM;
    VkPipelineLayout layout;
    VULKAN(vkCreatePipelineLayout(device, &(VkPipelineLayoutCreateInfo){
        VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO, .setLayoutCount = 1,
        .pSetLayouts = &setLayout}, NULL, &layout));
    VkPipeline pipeline;
    VULKAN(vkCreateGraphicsPipelines(device, VK_NULL_HANDLE, 1, &(VkGraphicsPipelineCreateInfo){
        VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO, &(VkPipelineRenderingCreateInfo){
            VK_STRUCTURE_TYPE_PIPELINE_RENDERING_CREATE_INFO, .colorAttachmentCount = 1,
            .pColorAttachmentFormats = &format}, .stageCount = stageCount, .pStages = stages,
        .pVertexInputState = &(VkPipelineVertexInputStateCreateInfo){
            VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO},
        .pInputAssemblyState = &(VkPipelineInputAssemblyStateCreateInfo){
            VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO,
            .topology = VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST},
        .pViewportState = &(VkPipelineViewportStateCreateInfo){
            VK_STRUCTURE_TYPE_PIPELINE_VIEWPORT_STATE_CREATE_INFO,
            .viewportCount = 1, .pViewports = &(VkViewport){0, side, side, -side, 0, 1},
            .scissorCount = 1, .pScissors = &(VkRect2D){{0, 0}, {side, side}}},
        .pRasterizationState = &(VkPipelineRasterizationStateCreateInfo){
            VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_STATE_CREATE_INFO, .lineWidth = 1},
        .pMultisampleState = &(VkPipelineMultisampleStateCreateInfo){
            VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO,
            .rasterizationSamples = VK_SAMPLE_COUNT_1_BIT},
        .pColorBlendState = &(VkPipelineColorBlendStateCreateInfo){
            VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO, .attachmentCount = 1,
            .pAttachments = &(VkPipelineColorBlendAttachmentState){.colorWriteMask = 15}},
        .layout = layout}, NULL, &pipeline));
    tarnwick_msl_result_destroy(result);
    tarnwick_msl_compiler_destroy(compiler);

    /* The picture, and the memory that it is read back into. */
    VkImage image;
    VULKAN(vkCreateImage(device, &(VkImageCreateInfo){VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO,
        .imageType = VK_IMAGE_TYPE_2D, .format = format, .extent = {side, side, 1}, .mipLevels = 1,
        .arrayLayers = 1, .samples = VK_SAMPLE_COUNT_1_BIT,
        .usage = VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT | VK_IMAGE_USAGE_TRANSFER_SRC_BIT},
        NULL, &image));
    VkMemoryRequirements needs;
    vkGetImageMemoryRequirements(device, image, &needs);
    VULKAN(vkBindImageMemory(device, image, memoryFor(needs, 0), 0));
    const VkImageSubresourceRange whole = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    VkImageView view;
    VULKAN(vkCreateImageView(device, &(VkImageViewCreateInfo){
        VK_STRUCTURE_TYPE_IMAGE_VIEW_CREATE_INFO, .image = image,
        .viewType = VK_IMAGE_VIEW_TYPE_2D, .format = format, .subresourceRange = whole},
        NULL, &view));
    void* pixels;
    const VkBuffer readBack = bufferOf(side * side * 4, VK_BUFFER_USAGE_TRANSFER_DST_BIT, &pixels);

    /* The commands. */
    VkCommandPool commandPool;
    VULKAN(vkCreateCommandPool(device, &(VkCommandPoolCreateInfo){
        VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO}, NULL, &commandPool));
    VkCommandBuffer commands;
    VULKAN(vkAllocateCommandBuffers(device, &(VkCommandBufferAllocateInfo){
        VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO, .commandPool = commandPool,
        .commandBufferCount = 1}, &commands));
    VULKAN(vkBeginCommandBuffer(commands, &(VkCommandBufferBeginInfo){
        VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO}));
    VkImageMemoryBarrier2 barrier = {VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2,
        .dstStageMask = VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT,
        .dstAccessMask = VK_ACCESS_2_COLOR_ATTACHMENT_WRITE_BIT,
        .newLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL, .image = image,
        .subresourceRange = whole};
    const VkDependencyInfo dependency = {VK_STRUCTURE_TYPE_DEPENDENCY_INFO,
        .imageMemoryBarrierCount = 1, .pImageMemoryBarriers = &barrier};
    vkCmdPipelineBarrier2(commands, &dependency);
    vkCmdBeginRendering(commands, &(VkRenderingInfo){VK_STRUCTURE_TYPE_RENDERING_INFO,
        .renderArea = {{0, 0}, {side, side}}, .layerCount = 1, .colorAttachmentCount = 1,
        .pColorAttachments = &(VkRenderingAttachmentInfo){
            VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO, .imageView = view,
            .imageLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL,
            .loadOp = VK_ATTACHMENT_LOAD_OP_CLEAR, .storeOp = VK_ATTACHMENT_STORE_OP_STORE}});
    vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, pipeline);
    vkCmdBindDescriptorSets(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, layout, 0, 1, &descriptors,
                            0, NULL);
    vkCmdDraw(commands, 3, 1, 0, 0);
    vkCmdEndRendering(commands);
    barrier.srcStageMask = barrier.dstStageMask;
    barrier.srcAccessMask = barrier.dstAccessMask;
    barrier.oldLayout = barrier.newLayout;
    barrier.dstStageMask = VK_PIPELINE_STAGE_2_COPY_BIT;
    barrier.dstAccessMask = VK_ACCESS_2_TRANSFER_READ_BIT;
    barrier.newLayout = VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL;
    vkCmdPipelineBarrier2(commands, &dependency);
    vkCmdCopyImageToBuffer(commands, image, VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL, readBack, 1,
        &(VkBufferImageCopy){.imageSubresource = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 0, 1},
                             .imageExtent = {side, side, 1}});
    vkCmdPipelineBarrier2(commands, &(VkDependencyInfo){VK_STRUCTURE_TYPE_DEPENDENCY_INFO,
        .memoryBarrierCount = 1, .pMemoryBarriers = &(VkMemoryBarrier2){
            VK_STRUCTURE_TYPE_MEMORY_BARRIER_2, .srcStageMask = VK_PIPELINE_STAGE_2_COPY_BIT,
            .srcAccessMask = VK_ACCESS_2_TRANSFER_WRITE_BIT,
            .dstStageMask = VK_PIPELINE_STAGE_2_HOST_BIT,
            .dstAccessMask = VK_ACCESS_2_HOST_READ_BIT}});
    VULKAN(vkEndCommandBuffer(commands));
    VULKAN(vkQueueSubmit2(queue, 1, &(VkSubmitInfo2){VK_STRUCTURE_TYPE_SUBMIT_INFO_2,
        .commandBufferInfoCount = 1, .pCommandBufferInfos = &(VkCommandBufferSubmitInfo){
            VK_STRUCTURE_TYPE_COMMAND_BUFFER_SUBMIT_INFO, .commandBuffer = commands}},
        VK_NULL_HANDLE));
    VULKAN(vkDeviceWaitIdle(device));

    /* The picture as a file. The end of the process frees the objects of Vulkan. */
    FILE* file = fopen(words[1], "wb");
    require(file && fprintf(file, "P6\n%d %d\n255\n", side, side) > 0, "The file is not writable.");
    for (int i = 0; i < side * side; ++i)
        require(fwrite((char*)pixels + i * 4, 3, 1, file) == 1, "The file is not writable.");
    return fclose(file) != 0;
}
