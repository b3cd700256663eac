#include "canvas.h"

#include <stdio.h>
#include <stdlib.h>

#define VULKAN(call) require((call) == VK_SUCCESS, "Vulkan fails: " #call)

enum { mostStages = 2, mostBindings = 8, mostBuffers = 2 };

static const VkFormat format = VK_FORMAT_R8G8B8A8_UNORM;
static const VkImageSubresourceRange whole = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};

struct canvas {
    VkInstance instance;
    VkPhysicalDeviceMemoryProperties memories;
    VkDevice device;
    VkQueue queue;
    VkPipelineShaderStageCreateInfo stages[mostStages];
    uint32_t stageCount;
    VkDescriptorSetLayoutBinding bindings[mostBindings];
    uint32_t bindingCount;
    VkBuffer buffers[mostBuffers]; /* the first has the uniforms */
    VkDeviceMemory bufferMemories[mostBuffers];
    uint32_t bufferCount;
    VkDescriptorSetLayout setLayout;
    VkDescriptorPool descriptorPool;
    VkDescriptorSet descriptors;
    VkPipelineLayout layout;
    VkPipeline pipeline;
    VkImage image;
    VkDeviceMemory imageMemory;
    VkImageView view;
    VkCommandPool commandPool;
};

void require(int isGood, const char* sentence) {
    if (isGood)
        return;
    fprintf(stderr, "%s\n", sentence);
    exit(1);
}

static VkDeviceMemory memoryFor(const canvas* canvas, VkMemoryRequirements needs,
                                VkMemoryPropertyFlags flags) {
    const VkPhysicalDeviceMemoryProperties* memories = &canvas->memories;
    uint32_t type = 0;
    while (type < memories->memoryTypeCount && (!(needs.memoryTypeBits >> type & 1) ||
           (memories->memoryTypes[type].propertyFlags & flags) != flags))
        ++type;
    require(type < memories->memoryTypeCount, "The device lacks a type of memory.");
    VkDeviceMemory memory;
    VULKAN(vkAllocateMemory(canvas->device, &(VkMemoryAllocateInfo){
        VK_STRUCTURE_TYPE_MEMORY_ALLOCATE_INFO, .allocationSize = needs.size,
        .memoryTypeIndex = type}, NULL, &memory));
    return memory;
}

/* A buffer, and its memory as the processor sees it. */
static VkBuffer bufferOf(canvas* canvas, VkDeviceSize bytes, VkBufferUsageFlags usage,
                         void** contents) {
    VkBuffer* buffer = &canvas->buffers[canvas->bufferCount];
    VkDeviceMemory* memory = &canvas->bufferMemories[canvas->bufferCount++];
    VULKAN(vkCreateBuffer(canvas->device, &(VkBufferCreateInfo){
        VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO, .size = bytes, .usage = usage}, NULL, buffer));
    VkMemoryRequirements needs;
    vkGetBufferMemoryRequirements(canvas->device, *buffer, &needs);
    *memory = memoryFor(canvas, needs,
        VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT | VK_MEMORY_PROPERTY_HOST_COHERENT_BIT);
    VULKAN(vkBindBufferMemory(canvas->device, *buffer, *memory, 0));
    VULKAN(vkMapMemory(canvas->device, *memory, 0, VK_WHOLE_SIZE, 0, contents));
    return *buffer;
}

canvas* canvas_create(void) {
    canvas* canvas = calloc(1, sizeof *canvas);
    require(canvas != NULL, "There is not enough memory.");
    VULKAN(vkCreateInstance(&(VkInstanceCreateInfo){VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO,
        .pApplicationInfo = &(VkApplicationInfo){VK_STRUCTURE_TYPE_APPLICATION_INFO,
            .apiVersion = VK_API_VERSION_1_3}}, NULL, &canvas->instance));
    uint32_t one = 1;
    VkPhysicalDevice physical;
    require(vkEnumeratePhysicalDevices(canvas->instance, &one, &physical) >= 0 && one == 1,
            "Vulkan lists no device.");
    vkGetPhysicalDeviceMemoryProperties(physical, &canvas->memories);
    VkPhysicalDeviceVulkan12Features vulkan12 = {
        VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_2_FEATURES, .scalarBlockLayout = VK_TRUE};
    VkPhysicalDeviceVulkan13Features vulkan13 = {
        VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_FEATURES, &vulkan12,
        .synchronization2 = VK_TRUE, .dynamicRendering = VK_TRUE};
    /* The first family of queues draws, on every device that draws at all in practice. */
    VULKAN(vkCreateDevice(physical, &(VkDeviceCreateInfo){VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO,
        &vulkan13, .queueCreateInfoCount = 1, .pQueueCreateInfos = &(VkDeviceQueueCreateInfo){
            VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO, .queueCount = 1,
            .pQueuePriorities = &(float){1}}}, NULL, &canvas->device));
    vkGetDeviceQueue(canvas->device, 0, 0, &canvas->queue);
    return canvas;
}

void canvas_add_stage(canvas* canvas, VkShaderStageFlagBits stage, const uint32_t* words,
                      size_t word_count) {
    require(canvas->stageCount < mostStages, "The program has more than two stages.");
    VkShaderModule module;
    VULKAN(vkCreateShaderModule(canvas->device, &(VkShaderModuleCreateInfo){
        VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO, .codeSize = word_count * sizeof *words,
        .pCode = words}, NULL, &module));
    canvas->stages[canvas->stageCount++] = (VkPipelineShaderStageCreateInfo){
        VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO, .stage = stage, .module = module,
        .pName = "main"};
}

void canvas_add_uniforms(canvas* canvas, VkShaderStageFlagBits stage, uint32_t binding) {
    require(canvas->bindingCount < mostBindings, "The program has too many bindings.");
    canvas->bindings[canvas->bindingCount++] = (VkDescriptorSetLayoutBinding){
        binding, VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER, 1, stage, NULL};
}

void* canvas_uniforms(canvas* canvas, size_t bytes) {
    void* contents;
    bufferOf(canvas, bytes, VK_BUFFER_USAGE_UNIFORM_BUFFER_BIT, &contents);
    return contents;
}

static void bindUniforms(canvas* canvas) {
    VULKAN(vkCreateDescriptorSetLayout(canvas->device, &(VkDescriptorSetLayoutCreateInfo){
        VK_STRUCTURE_TYPE_DESCRIPTOR_SET_LAYOUT_CREATE_INFO, .bindingCount = canvas->bindingCount,
        .pBindings = canvas->bindings}, NULL, &canvas->setLayout));
    VULKAN(vkCreateDescriptorPool(canvas->device, &(VkDescriptorPoolCreateInfo){
        VK_STRUCTURE_TYPE_DESCRIPTOR_POOL_CREATE_INFO, .maxSets = 1, .poolSizeCount = 1,
        .pPoolSizes = &(VkDescriptorPoolSize){VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER,
            canvas->bindingCount}}, NULL, &canvas->descriptorPool));
    VULKAN(vkAllocateDescriptorSets(canvas->device, &(VkDescriptorSetAllocateInfo){
        VK_STRUCTURE_TYPE_DESCRIPTOR_SET_ALLOCATE_INFO, .descriptorPool = canvas->descriptorPool,
        .descriptorSetCount = 1, .pSetLayouts = &canvas->setLayout}, &canvas->descriptors));
    for (uint32_t i = 0; i < canvas->bindingCount; ++i)
        vkUpdateDescriptorSets(canvas->device, 1, &(VkWriteDescriptorSet){
            VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET, .dstSet = canvas->descriptors,
            .dstBinding = canvas->bindings[i].binding, .descriptorCount = 1,
            .descriptorType = VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER,
            .pBufferInfo = &(VkDescriptorBufferInfo){canvas->buffers[0], 0, VK_WHOLE_SIZE}},
            0, NULL);
}

/* In Metal y points up, so the viewport has a negative height. */
static void makePipeline(canvas* canvas) {
    const int side = canvas_side;
    VULKAN(vkCreatePipelineLayout(canvas->device, &(VkPipelineLayoutCreateInfo){
        VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO, .setLayoutCount = 1,
        .pSetLayouts = &canvas->setLayout}, NULL, &canvas->layout));
    VULKAN(vkCreateGraphicsPipelines(canvas->device, VK_NULL_HANDLE, 1,
        &(VkGraphicsPipelineCreateInfo){VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO,
        &(VkPipelineRenderingCreateInfo){VK_STRUCTURE_TYPE_PIPELINE_RENDERING_CREATE_INFO,
            .colorAttachmentCount = 1, .pColorAttachmentFormats = &format},
        .stageCount = canvas->stageCount, .pStages = canvas->stages,
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
        .layout = canvas->layout}, NULL, &canvas->pipeline));
}

static void makeImage(canvas* canvas) {
    VULKAN(vkCreateImage(canvas->device, &(VkImageCreateInfo){VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO,
        .imageType = VK_IMAGE_TYPE_2D, .format = format, .extent = {canvas_side, canvas_side, 1},
        .mipLevels = 1, .arrayLayers = 1, .samples = VK_SAMPLE_COUNT_1_BIT,
        .usage = VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT | VK_IMAGE_USAGE_TRANSFER_SRC_BIT},
        NULL, &canvas->image));
    VkMemoryRequirements needs;
    vkGetImageMemoryRequirements(canvas->device, canvas->image, &needs);
    canvas->imageMemory = memoryFor(canvas, needs, 0);
    VULKAN(vkBindImageMemory(canvas->device, canvas->image, canvas->imageMemory, 0));
    VULKAN(vkCreateImageView(canvas->device, &(VkImageViewCreateInfo){
        VK_STRUCTURE_TYPE_IMAGE_VIEW_CREATE_INFO, .image = canvas->image,
        .viewType = VK_IMAGE_VIEW_TYPE_2D, .format = format, .subresourceRange = whole},
        NULL, &canvas->view));
}

/* Draws, and copies the picture into the buffer. */
static void record(const canvas* canvas, VkCommandBuffer commands, uint32_t vertices,
                   VkBuffer readBack) {
    VULKAN(vkBeginCommandBuffer(commands, &(VkCommandBufferBeginInfo){
        VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO}));
    VkImageMemoryBarrier2 barrier = {VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER_2,
        .dstStageMask = VK_PIPELINE_STAGE_2_COLOR_ATTACHMENT_OUTPUT_BIT,
        .dstAccessMask = VK_ACCESS_2_COLOR_ATTACHMENT_WRITE_BIT,
        .newLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL, .image = canvas->image,
        .subresourceRange = whole};
    const VkDependencyInfo dependency = {VK_STRUCTURE_TYPE_DEPENDENCY_INFO,
        .imageMemoryBarrierCount = 1, .pImageMemoryBarriers = &barrier};
    vkCmdPipelineBarrier2(commands, &dependency);
    vkCmdBeginRendering(commands, &(VkRenderingInfo){VK_STRUCTURE_TYPE_RENDERING_INFO,
        .renderArea = {{0, 0}, {canvas_side, canvas_side}}, .layerCount = 1,
        .colorAttachmentCount = 1, .pColorAttachments = &(VkRenderingAttachmentInfo){
            VK_STRUCTURE_TYPE_RENDERING_ATTACHMENT_INFO, .imageView = canvas->view,
            .imageLayout = VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL,
            .loadOp = VK_ATTACHMENT_LOAD_OP_CLEAR, .storeOp = VK_ATTACHMENT_STORE_OP_STORE}});
    vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, canvas->pipeline);
    vkCmdBindDescriptorSets(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, canvas->layout, 0, 1,
                            &canvas->descriptors, 0, NULL);
    vkCmdDraw(commands, vertices, 1, 0, 0);
    vkCmdEndRendering(commands);
    barrier.srcStageMask = barrier.dstStageMask;
    barrier.srcAccessMask = barrier.dstAccessMask;
    barrier.oldLayout = barrier.newLayout;
    barrier.dstStageMask = VK_PIPELINE_STAGE_2_COPY_BIT;
    barrier.dstAccessMask = VK_ACCESS_2_TRANSFER_READ_BIT;
    barrier.newLayout = VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL;
    vkCmdPipelineBarrier2(commands, &dependency);
    vkCmdCopyImageToBuffer(commands, canvas->image, VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL, readBack,
        1, &(VkBufferImageCopy){.imageSubresource = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 0, 1},
                                .imageExtent = {canvas_side, canvas_side, 1}});
    vkCmdPipelineBarrier2(commands, &(VkDependencyInfo){VK_STRUCTURE_TYPE_DEPENDENCY_INFO,
        .memoryBarrierCount = 1, .pMemoryBarriers = &(VkMemoryBarrier2){
            VK_STRUCTURE_TYPE_MEMORY_BARRIER_2, .srcStageMask = VK_PIPELINE_STAGE_2_COPY_BIT,
            .srcAccessMask = VK_ACCESS_2_TRANSFER_WRITE_BIT,
            .dstStageMask = VK_PIPELINE_STAGE_2_HOST_BIT,
            .dstAccessMask = VK_ACCESS_2_HOST_READ_BIT}});
    VULKAN(vkEndCommandBuffer(commands));
}

/* `pixels` have 4 bytes each, rows from the top. */
static void writePicture(const unsigned char* pixels, const char* path) {
    const char* problem = "The file is not writable.";
    FILE* file = fopen(path, "wb");
    require(file && fprintf(file, "P6\n%d %d\n255\n", canvas_side, canvas_side) > 0, problem);
    for (size_t i = 0; i < canvas_side * canvas_side; ++i)
        require(fwrite(pixels + i * 4, 3, 1, file) == 1, problem);
    require(fclose(file) == 0, problem);
}

void canvas_draw(canvas* canvas, uint32_t vertices, const char* path) {
    bindUniforms(canvas);
    makePipeline(canvas);
    makeImage(canvas);
    void* pixels;
    const VkBuffer readBack = bufferOf(canvas, canvas_side * canvas_side * 4,
                                       VK_BUFFER_USAGE_TRANSFER_DST_BIT, &pixels);
    VULKAN(vkCreateCommandPool(canvas->device, &(VkCommandPoolCreateInfo){
        VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO}, NULL, &canvas->commandPool));
    VkCommandBuffer commands;
    VULKAN(vkAllocateCommandBuffers(canvas->device, &(VkCommandBufferAllocateInfo){
        VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO, .commandPool = canvas->commandPool,
        .commandBufferCount = 1}, &commands));
    record(canvas, commands, vertices, readBack);
    VULKAN(vkQueueSubmit2(canvas->queue, 1, &(VkSubmitInfo2){VK_STRUCTURE_TYPE_SUBMIT_INFO_2,
        .commandBufferInfoCount = 1, .pCommandBufferInfos = &(VkCommandBufferSubmitInfo){
            VK_STRUCTURE_TYPE_COMMAND_BUFFER_SUBMIT_INFO, .commandBuffer = commands}},
        VK_NULL_HANDLE));
    VULKAN(vkDeviceWaitIdle(canvas->device));
    writePicture(pixels, path);
}

void canvas_destroy(canvas* canvas) {
    const VkDevice device = canvas->device;
    vkDestroyCommandPool(device, canvas->commandPool, NULL);
    vkDestroyImageView(device, canvas->view, NULL);
    vkDestroyImage(device, canvas->image, NULL);
    vkFreeMemory(device, canvas->imageMemory, NULL);
    vkDestroyPipeline(device, canvas->pipeline, NULL);
    vkDestroyPipelineLayout(device, canvas->layout, NULL);
    vkDestroyDescriptorPool(device, canvas->descriptorPool, NULL);
    vkDestroyDescriptorSetLayout(device, canvas->setLayout, NULL);
    for (uint32_t i = 0; i < canvas->bufferCount; ++i) {
        vkDestroyBuffer(device, canvas->buffers[i], NULL);
        vkFreeMemory(device, canvas->bufferMemories[i], NULL);
    }
    for (uint32_t i = 0; i < canvas->stageCount; ++i)
        vkDestroyShaderModule(device, canvas->stages[i].module, NULL);
    vkDestroyDevice(device, NULL);
    vkDestroyInstance(canvas->instance, NULL);
    free(canvas);
}
