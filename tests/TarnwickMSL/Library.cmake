# The standard library's functions on the device, held to a table of bounds.
if(TARGET TarnwickGPU)
    add_library(LibraryCases STATIC
        Library/Cases.cpp Library/CommonCases.cpp Library/FastCases.cpp Library/GeometricCases.cpp
        Library/Machine.cpp Library/PreciseCases.cpp)
    target_link_libraries(LibraryCases PUBLIC TarnwickGPU PRIVATE tarnwick_warnings)

    tarnwick_tests(TarnwickMSL/Library
        SOURCES Library/IntegerTests.cpp Library/LibraryTests.cpp Library/TablesTests.cpp
        LINK LibraryCases TarnwickMSLTranslationFrontEnd
        LABELS gpu)
    target_compile_definitions(TarnwickMSLLibraryTests PRIVATE
        TARNWICK_CORPUS="${CMAKE_CURRENT_SOURCE_DIR}/corpus")

    # Writes the table of docs/library.md; built on demand.
    add_executable(library-table EXCLUDE_FROM_ALL Library/TableMain.cpp)
    target_link_libraries(library-table PRIVATE LibraryCases tarnwick_warnings)
endif()
