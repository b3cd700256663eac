tarnwick_tests(TarnwickMSLSpirv
    SOURCES SpirvTests.cpp SpirvModules.cpp
    LINK TarnwickMSLTranslationSpirv)

tarnwick_tests(TarnwickMSL/Wgsl
    SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/WgslTests.cpp ${CMAKE_CURRENT_SOURCE_DIR}/SpirvModules.cpp
    LINK TarnwickMSLTranslationWgsl)

if(TARGET TarnwickGPU)
    tarnwick_tests(TarnwickMSL/Textures
        SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/KernelTest.cpp
                ${CMAKE_CURRENT_SOURCE_DIR}/NumberedTextures.cpp
                ${CMAKE_CURRENT_SOURCE_DIR}/TextureShapeTests.cpp
                ${CMAKE_CURRENT_SOURCE_DIR}/TextureTests.cpp
        LINK TarnwickGPU
        LABELS gpu)
    target_compile_options(TarnwickMSLTexturesTests PRIVATE -Wno-missing-field-initializers)
    add_dependencies(TarnwickMSLTexturesTests tarnwick-msl-worker)

    tarnwick_tests(TarnwickMSL/SpirvValues
        SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/KernelTest.cpp
                ${CMAKE_CURRENT_SOURCE_DIR}/SpirvValuesTests.cpp
                ${CMAKE_CURRENT_SOURCE_DIR}/SpirvModules.cpp
        LINK TarnwickGPU TarnwickMSLTranslationSpirv
        LABELS gpu)
    add_dependencies(TarnwickMSLSpirvValuesTests tarnwick-msl-worker)
    target_compile_options(TarnwickMSLSpirvValuesTests PRIVATE -Wno-missing-field-initializers)

    tarnwick_tests(TarnwickMSL/Memory
        SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/KernelTest.cpp
                ${CMAKE_CURRENT_SOURCE_DIR}/ArgumentBufferTests.cpp
                ${CMAKE_CURRENT_SOURCE_DIR}/KernelTests.cpp
                ${CMAKE_CURRENT_SOURCE_DIR}/LayoutTests.cpp
        LINK TarnwickGPU
        LABELS gpu)
    add_dependencies(TarnwickMSLMemoryTests tarnwick-msl-worker)
    target_compile_options(TarnwickMSLMemoryTests PRIVATE -Wno-missing-field-initializers)
endif()

tarnwick_tests(TarnwickMSL/Validity
    SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/BuiltInValidityTests.cpp
            ${CMAKE_CURRENT_SOURCE_DIR}/LoopShapeTests.cpp
            ${CMAKE_CURRENT_SOURCE_DIR}/ValidityTests.cpp
    LINK TarnwickCore TarnwickMSL TarnwickMSLTranslationFrontEnd TarnwickMSLTranslationSpirv
         TarnwickSpirv RandomPrograms)
target_compile_definitions(TarnwickMSLValidityTests PRIVATE
    TARNWICK_CORPUS="${CMAKE_CURRENT_SOURCE_DIR}/corpus"
    TARNWICK_EPISODES="${CMAKE_SOURCE_DIR}/episodes")
add_dependencies(TarnwickMSLValidityTests tarnwick-msl-worker)
