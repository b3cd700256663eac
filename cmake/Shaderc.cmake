# The target tarnwick_shaderc, where libshaderc-dev is installed: GLSL to SPIR-V for the GPU layer's
# tests and for benchmarks. Debian 12's shared library lacks symbols of its own, and its static ones
# name none of what they need.
find_path(SHADERC_INCLUDE shaderc/shaderc.hpp)
find_library(SHADERC_COMBINED shaderc_combined)
if(NOT TARGET tarnwick_shaderc AND SHADERC_INCLUDE AND SHADERC_COMBINED)
    add_library(tarnwick_shaderc INTERFACE)
    target_include_directories(tarnwick_shaderc SYSTEM INTERFACE ${SHADERC_INCLUDE})
    target_link_libraries(tarnwick_shaderc INTERFACE
        ${SHADERC_COMBINED} SPIRV glslang HLSL MachineIndependent GenericCodeGen OGLCompiler
        OSDependent SPIRV-Tools-opt SPIRV-Tools pthread)
endif()
