/* Compiles a Metal program, binds what it finds, and draws a triangle with Vulkan (canvas.c):
 *   cc -std=c11 triangle.c canvas.c -o triangle $(pkg-config --cflags --libs tarnwick-msl vulkan)
 *   ./triangle triangle.ppm
 */
#include <string.h>
#include <tarnwick/msl.h>

#include "canvas.h"

static const char text[] =
    "#include <metal_stdlib>\nusing namespace metal;\n"
    "struct Look { packed_float3 tint; float scale; };\n"
    "struct Corner { float4 position [[position]]; float3 colour; };\n"
    "vertex Corner corner(uint i [[vertex_id]], constant Look& look [[buffer(0)]]) {\n"
    "    const float2 at[] = {{-1, -1}, {1, -1}, {0, 1}};\n"
    "    return {float4(at[i] * look.scale, 0, 1), float3(i == 0, i == 1, i == 2)};\n"
    "}\n"
    "fragment float4 paint(Corner in [[stage_in]], constant Look& look [[buffer(0)]]) {\n"
    "    return float4(in.colour * look.tint, 1);\n"
    "}\n";

/* Copies numbers to the member `name` of the program's first record. */
static void set(const tarnwick_msl_result* result, char* to, const char* name, const float* from) {
    tarnwick_msl_record_member member = {sizeof member};
    for (size_t i = 0; tarnwick_msl_result_record_member(result, 0, i, &member); ++i)
        if (strcmp(member.name, name) == 0)
            memcpy(to + member.offset, from, member.bytes);
}

int main(int count, char** words) {
    require(count == 2, "usage: triangle OUT.ppm");
    tarnwick_msl_compiler* compiler;
    tarnwick_msl_result* result;
    require(tarnwick_msl_compiler_create(NULL, &compiler) == TARNWICK_MSL_DONE, "No compiler.");
    const int status = tarnwick_msl_compile(compiler, NULL, text, strlen(text), &result);
    require(status == TARNWICK_MSL_DONE, tarnwick_msl_result_messages(result));

    canvas* picture = canvas_create();
    tarnwick_msl_entry_point entry = {sizeof entry};
    for (size_t i = 0; tarnwick_msl_result_entry_point(result, i, &entry); ++i) {
        const VkShaderStageFlagBits stage = entry.stage == TARNWICK_MSL_VERTEX
            ? VK_SHADER_STAGE_VERTEX_BIT : VK_SHADER_STAGE_FRAGMENT_BIT;
        canvas_add_stage(picture, stage, entry.words, entry.word_count);
        tarnwick_msl_binding binding = {sizeof binding};
        for (size_t k = 0; tarnwick_msl_result_binding(result, i, k, &binding); ++k) {
            require(binding.kind == TARNWICK_MSL_UNIFORM_BUFFER, "Not a uniform buffer.");
            canvas_add_uniforms(picture, stage, binding.binding);
        }
    }
    tarnwick_msl_record record = {sizeof record};
    require(tarnwick_msl_result_record(result, 0, &record), "No record.");
    char* look = canvas_uniforms(picture, record.bytes);
    set(result, look, "tint", (float[]){1, 0.8f, 0.6f});
    set(result, look, "scale", &(float){0.8f});
    canvas_draw(picture, 3, words[1]);
    canvas_destroy(picture);
    tarnwick_msl_result_destroy(result);
    tarnwick_msl_compiler_destroy(compiler);
    return 0;
}
