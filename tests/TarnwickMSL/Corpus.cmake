# Small programs of the language's habits whose values are known by hand.
if(TARGET TarnwickGPU)
    tarnwick_tests(TarnwickMSL/Corpus
        SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/CorpusTests.cpp
        LINK TarnwickGPU
        LABELS gpu)
    add_dependencies(TarnwickMSLCorpusTests tarnwick-msl-worker)
    target_compile_definitions(TarnwickMSLCorpusTests PRIVATE
        TARNWICK_CORPUS="${CMAKE_CURRENT_SOURCE_DIR}/corpus")
endif()
