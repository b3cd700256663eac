find_library(spirv_tools SPIRV-Tools REQUIRED)
tarnwick_tests(TarnwickMSLSpirv
    SOURCES SpirvTests.cpp SpirvModules.cpp
    LINK TarnwickMSLTranslationSpirv ${spirv_tools})

if(TARGET TarnwickGPU)
    tarnwick_tests(TarnwickMSL/Textures
        SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/TextureTests.cpp
        LINK TarnwickGPU
        LABELS gpu)
    target_compile_options(TarnwickMSLTexturesTests PRIVATE -Wno-missing-field-initializers)
    add_dependencies(TarnwickMSLTexturesTests tarnwick-msl-worker)
endif()
