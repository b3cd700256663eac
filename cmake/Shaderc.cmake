# The target tarnwick_shaderc, if libshaderc-dev is installed: GLSL to SPIR-V for benchmarks and for
# the tests of the GPU layer. The shared library of Debian 12 lacks some of its symbols, and the
# static libraries do not name their dependencies.
find_path(SHADERC_INCLUDE shaderc/shaderc.hpp)
find_library(SHADERC_COMBINED shaderc_combined)
if(NOT TARGET tarnwick_shaderc AND SHADERC_INCLUDE AND SHADERC_COMBINED)
    add_library(tarnwick_shaderc INTERFACE)
    target_include_directories(tarnwick_shaderc SYSTEM INTERFACE ${SHADERC_INCLUDE})
    target_link_libraries(tarnwick_shaderc INTERFACE
        ${SHADERC_COMBINED} SPIRV glslang HLSL MachineIndependent GenericCodeGen OGLCompiler
        OSDependent SPIRV-Tools-opt SPIRV-Tools pthread)
endif()
