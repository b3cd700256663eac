/* A square picture that Vulkan 1.3 draws without a window: the part of the example that the
 * compiler has nothing to do with. Each function ends the process with a sentence if it fails. */
#ifndef CANVAS_H
#define CANVAS_H

#include <stddef.h>
#include <stdint.h>
#include <vulkan/vulkan.h>

enum { canvas_side = 256 }; /* pixels */

typedef struct canvas canvas;

/* Ends the process with the sentence if `isGood` is 0. */
void require(int isGood, const char* sentence);

/* With the first device that Vulkan lists. */
canvas* canvas_create(void);

/* A stage of the pipeline, one of two at most. The words are copied. */
void canvas_add_stage(canvas* canvas, VkShaderStageFlagBits stage, const uint32_t* words,
                      size_t word_count);

/* A uniform buffer of the stage, in descriptor set 0. All bindings have the same buffer. */
void canvas_add_uniforms(canvas* canvas, VkShaderStageFlagBits stage, uint32_t binding);

/* The memory of the uniform buffer, which the canvas owns. Call it once. */
void* canvas_uniforms(canvas* canvas, size_t bytes);

/* Draws triangles of as many vertices onto black, waits for the picture, and writes it to the file
 * as a Portable Pixmap, without its alpha. Call it once. */
void canvas_draw(canvas* canvas, uint32_t vertices, const char* path);

void canvas_destroy(canvas* canvas);

#endif
