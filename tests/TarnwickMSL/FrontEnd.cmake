tarnwick_tests(TarnwickMSL/FrontEnd
    SOURCES FrontEnd/FrontEndTests.cpp FrontEnd/Parsing.cpp FrontEnd/PlacesTests.cpp FrontEnd/SessionTests.cpp
            FrontEnd/TokensTests.cpp
    LINK TarnwickMSLTranslationFrontEnd tarnwick_clang)
target_compile_definitions(TarnwickMSLFrontEndTests PRIVATE
    TARNWICK_CORPUS="${CMAKE_CURRENT_SOURCE_DIR}/corpus")

tarnwick_tests(TarnwickMSL/Compile
    SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/CompileTests.cpp ${CMAKE_CURRENT_SOURCE_DIR}/WorkerProcessTests.cpp
    LINK TarnwickMSL)
add_dependencies(TarnwickMSLCompileTests tarnwick-msl-worker)

tarnwick_tests(TarnwickMSL/Confinement
    SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/ConfinementTests.cpp
    LINK TarnwickMSL TarnwickMSLConfinement)
add_dependencies(TarnwickMSLConfinementTests tarnwick-msl-worker)
