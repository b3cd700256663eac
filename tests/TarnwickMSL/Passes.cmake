# The passes alone: modules from text, run natively before and after.
tarnwick_tests(TarnwickMSL/Passes
    SOURCES Passes/ArrayLoopTests.cpp Passes/FractionTests.cpp Passes/InliningTests.cpp
            Passes/NarrowAccessTests.cpp Passes/PassesTests.cpp
            Passes/RandomFlow.cpp Passes/Running.cpp Passes/StructureTests.cpp
            Passes/StepsTests.cpp Passes/TwoValuedTableTests.cpp Passes/WidthsTests.cpp
    LINK TarnwickMSLTranslationPasses)
target_compile_definitions(TarnwickMSLPassesTests PRIVATE
    TARNWICK_STEPS="${CMAKE_CURRENT_SOURCE_DIR}/Steps"
    TARNWICK_COMPILER_PAGE="${CMAKE_SOURCE_DIR}/docs/compiler.md")
