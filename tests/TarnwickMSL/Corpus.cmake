# Small programs of the language's habits whose values are known by hand; and that what the docs say
# of the language is so.
if(TARGET TarnwickGPU)
    tarnwick_tests(TarnwickMSL/Corpus TOGETHER
        SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/CorpusConstants.cpp
                ${CMAKE_CURRENT_SOURCE_DIR}/CorpusProgram.cpp
                ${CMAKE_CURRENT_SOURCE_DIR}/CorpusTests.cpp
                ${CMAKE_CURRENT_SOURCE_DIR}/NumberedTextures.cpp
        LINK TarnwickGPU
        LABELS gpu)
    add_dependencies(TarnwickMSLCorpusTests tarnwick-msl-worker)
    target_compile_definitions(TarnwickMSLCorpusTests PRIVATE
        TARNWICK_CORPUS="${CMAKE_CURRENT_SOURCE_DIR}/corpus")
    target_compile_options(TarnwickMSLCorpusTests PRIVATE -Wno-missing-field-initializers)
endif()

tarnwick_tests(TarnwickMSL/Language
    SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/LanguageTests.cpp
    LINK TarnwickMSL)
add_dependencies(TarnwickMSLLanguageTests tarnwick-msl-worker)
target_compile_definitions(TarnwickMSLLanguageTests PRIVATE
    TARNWICK_CORPUS="${CMAKE_CURRENT_SOURCE_DIR}/corpus"
    TARNWICK_LANGUAGE_PAGE="${CMAKE_SOURCE_DIR}/docs/language.md"
    TARNWICK_LIBRARY_PAGE="${CMAKE_SOURCE_DIR}/docs/library.md")
