# The target tarnwick_shaderc: GLSL to SPIR-V for tests and benchmarks. Debian 12's shared library
# lacks symbols of its own, and its static ones name none of what they need.
if(NOT TARGET tarnwick_shaderc)
    add_library(tarnwick_shaderc INTERFACE)
    target_link_libraries(tarnwick_shaderc INTERFACE
        shaderc_combined SPIRV glslang HLSL MachineIndependent GenericCodeGen OGLCompiler OSDependent
        SPIRV-Tools-opt SPIRV-Tools pthread)
endif()
