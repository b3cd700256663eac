tarnwick_tests(TarnwickMSL/FrontEnd
    SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/FrontEndTests.cpp
    LINK TarnwickMSLTranslationFrontEnd)

tarnwick_tests(TarnwickMSL/Compile
    SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/CompileTests.cpp
    LINK TarnwickMSL)
add_dependencies(TarnwickMSLCompileTests tarnwick-msl-worker)
