# The passes alone: modules from text, run natively before and after.
tarnwick_tests(TarnwickMSL/Passes
    SOURCES Passes/ArrayLoopTests.cpp Passes/FractionTests.cpp Passes/NarrowAccessTests.cpp
            Passes/PassesTests.cpp
            Passes/RandomFlow.cpp Passes/Running.cpp Passes/StructureTests.cpp
            Passes/TwoValuedTableTests.cpp
    LINK TarnwickMSLTranslationPasses)
