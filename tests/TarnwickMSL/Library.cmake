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

    # All arguments of the functions of one float. The loops of Truth.cpp and Judge.cpp vectorise
    # only with these options; no NaN reaches Truth.cpp.
    set(accuracy ${CMAKE_CURRENT_SOURCE_DIR}/Accuracy)
    add_library(LibraryAccuracy STATIC
        ${accuracy}/Differences.cpp ${accuracy}/Judge.cpp ${accuracy}/Measure.cpp
        ${accuracy}/NativeSweep.cpp ${accuracy}/Page.cpp ${accuracy}/Sweeps.cpp ${accuracy}/Truth.cpp)
    set_source_files_properties(${accuracy}/Truth.cpp PROPERTIES COMPILE_OPTIONS "-O3;-ffast-math")
    set_source_files_properties(${accuracy}/Judge.cpp PROPERTIES
        COMPILE_OPTIONS "-O3;-fno-trapping-math")
    target_link_libraries(LibraryAccuracy
        PUBLIC LibraryCases TarnwickMSLTranslationFrontEnd TarnwickMSLTranslationPasses
        PRIVATE tarnwick_warnings)

    tarnwick_tests(TarnwickMSL/Accuracy
        SOURCES ${accuracy}/AccuracyTests.cpp
        LINK LibraryAccuracy
        LABELS gpu)
    target_compile_definitions(TarnwickMSLAccuracyTests PRIVATE
        TARNWICK_ACCURACY_PAGE="${CMAKE_SOURCE_DIR}/docs/accuracy.md")
    add_dependencies(TarnwickMSLAccuracyTests tarnwick-msl-worker)

    # Writes the tables of docs/accuracy.md; built on demand, runs for most of an hour.
    add_executable(library-accuracy EXCLUDE_FROM_ALL ${accuracy}/Main.cpp)
    add_dependencies(library-accuracy tarnwick-msl-worker)
    target_link_libraries(library-accuracy PRIVATE LibraryAccuracy tarnwick_warnings)
endif()
