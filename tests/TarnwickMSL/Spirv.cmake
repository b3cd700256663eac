find_library(spirv_tools SPIRV-Tools REQUIRED)
tarnwick_tests(TarnwickMSLSpirv
    SOURCES SpirvTests.cpp SpirvModules.cpp
    LINK TarnwickMSLTranslationSpirv ${spirv_tools})
