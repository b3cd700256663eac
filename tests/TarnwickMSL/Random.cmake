# Random programs: a generator, the same text compiled natively at build time, and the GPU.
set(random ${CMAKE_CURRENT_SOURCE_DIR}/RandomPrograms)
set(firstSeed 7)
set(programs 200)
math(EXPR lastSeed "${firstSeed} + ${programs} - 1")
set(randomSeeds ${firstSeed}..${lastSeed})

add_library(RandomPrograms STATIC
    ${random}/Metal.cpp ${random}/Native.cpp ${random}/Writing/Conditions.cpp
    ${random}/Writing/Expressions.cpp ${random}/Writing/Floats.cpp ${random}/Writing/Integers.cpp
    ${random}/Writing/Groups.cpp ${random}/Writing/Lambdas.cpp ${random}/Writing/Loops.cpp ${random}/Writing/Packed.cpp ${random}/Writing/Pointers.cpp
    ${random}/Writing/Prelude.cpp ${random}/Writing/Program.cpp ${random}/Writing/Records.cpp
    ${random}/Writing/Statements.cpp ${random}/Writing/Templates.cpp ${random}/Writing/Types.cpp
    ${random}/Writing/Vectors.cpp ${random}/Writing/World.cpp)
target_link_libraries(RandomPrograms PRIVATE tarnwick_warnings)
target_include_directories(RandomPrograms PUBLIC ${CMAKE_SOURCE_DIR})

add_executable(random-programs-text ${random}/TextMain.cpp)
target_link_libraries(random-programs-text PRIVATE RandomPrograms tarnwick_warnings)

set(randomNative ${CMAKE_CURRENT_BINARY_DIR}/RandomProgramsNative.cpp)
add_custom_command(OUTPUT ${randomNative}
    COMMAND random-programs-text native ${randomSeeds} > ${randomNative}
    DEPENDS random-programs-text ${random}/Shim/NativeShim.h ${random}/Shim/NativeFunctions.h
            ${random}/Shim/NativeVectors.h ${random}/Shim/NativeTextures.h
            ${random}/Shim/NativeScalars.h ${random}/Shim/NativeRuns.h ${random}/Metal.h
    COMMENT "Writing random programs ${randomSeeds} for the native compiler"
    VERBATIM)

if(TARGET TarnwickGPU)
    add_library(RandomProgramsOnGPU STATIC ${random}/Trial.cpp
                ${CMAKE_CURRENT_SOURCE_DIR}/NumberedTextures.cpp)
    target_link_libraries(RandomProgramsOnGPU PUBLIC RandomPrograms TarnwickGPU
                          PRIVATE tarnwick_warnings)

    # The programs' own text is not ours to warn about. Without optimising they
    # build in a third of the time.
    add_library(RandomProgramsNative STATIC ${randomNative})
    target_include_directories(RandomProgramsNative PRIVATE ${CMAKE_SOURCE_DIR})
    target_compile_options(RandomProgramsNative PRIVATE -w -O0 -ffp-contract=off -fwrapv)

    tarnwick_tests(TarnwickMSL/RandomPrograms
        SOURCES ${random}/RandomProgramsTests.cpp
        LINK RandomProgramsOnGPU RandomProgramsNative
        LABELS gpu)
    add_dependencies(TarnwickMSLRandomProgramsTests tarnwick-msl-worker)
    target_compile_definitions(TarnwickMSLRandomProgramsTests PRIVATE
        FIRST_SEED=${firstSeed} PROGRAMS=${programs})

    # Runs any seeds; built on demand, since it calls the native compiler itself.
    add_executable(random-programs EXCLUDE_FROM_ALL ${random}/Main.cpp ${random}/Watch.cpp)
    add_dependencies(random-programs tarnwick-msl-worker)
    target_link_libraries(random-programs PRIVATE RandomProgramsOnGPU tarnwick_warnings
                          ${CMAKE_DL_LIBS})
    target_compile_definitions(random-programs PRIVATE
        TARNWICK_SOURCE_DIR="${CMAKE_SOURCE_DIR}" TARNWICK_NATIVE_COMPILER="${CMAKE_CXX_COMPILER}")
endif()
