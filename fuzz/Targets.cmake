# The targets, for the fuzzer (fuzz/CMakeLists.txt) and for the test that runs each once on its seeds
# (tests/fuzz/CMakeLists.txt). Both define
#
# tarnwick_fuzz(NAME [SOURCES file...] [MUTATOR file...] [LINK library...])
#
# for NAME.cpp of this folder. MUTATOR changes inputs, so only the fuzzer has it.
tarnwick_fuzz(Diagnostics)
tarnwick_fuzz(Documents)
tarnwick_fuzz(Editor)
tarnwick_fuzz(Links)
tarnwick_fuzz(OSC)
tarnwick_fuzz(Performances)
tarnwick_fuzz(Service)
tarnwick_fuzz(Source)
tarnwick_fuzz(Walkthrough)

tarnwick_fuzz(Media LINK TarnwickPlatformMedia TarnwickPlatformMovie)
tarnwick_fuzz(MIDI LINK playerControl)
tarnwick_fuzz(Records LINK playerChannels playerControl playerExports playerFinding saverInstalling)
tarnwick_fuzz(Writing LINK playerWriting)

# The compiler, which the worker's program otherwise has alone.
tarnwick_fuzz(Wire LINK TarnwickMSL)
tarnwick_fuzz(Forms LINK TarnwickMSLTranslationPasses)
tarnwick_fuzz(Compiler
    SOURCES ${CMAKE_SOURCE_DIR}/TarnwickMSL/Worker/Translate.cpp
    MUTATOR Grammar/Mutations.cpp Grammar/Mutator.cpp Grammar/Pieces.cpp Grammar/Tokens.cpp
            Grammar/Words.cpp
    LINK TarnwickMSL TarnwickMSLTranslationFrontEnd TarnwickMSLTranslationPasses
         TarnwickMSLTranslationSpirv)
