/* The header as C, used as a program in C uses it. */
#include <tarnwick/msl.h>

#include <string.h>

/* The words of the program's first entry point; 0 if it does not compile. */
size_t wordsInC(const char* source);

size_t wordsInC(const char* source) {
    tarnwick_msl_compiler* compiler = NULL;
    tarnwick_msl_result* result = NULL;
    tarnwick_msl_entry_point entry = {.struct_size = sizeof entry};
    size_t words = 0;
    if (tarnwick_msl_compiler_create(NULL, &compiler) == TARNWICK_MSL_DONE &&
        tarnwick_msl_compile(compiler, NULL, source, strlen(source), &result) ==
            TARNWICK_MSL_DONE &&
        tarnwick_msl_result_entry_point(result, 0, &entry))
        words = entry.word_count;
    tarnwick_msl_result_destroy(result);
    tarnwick_msl_compiler_destroy(compiler);
    return words;
}
