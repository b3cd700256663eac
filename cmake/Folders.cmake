# One target a folder, and the arrows between folders in one place: the call of tarnwick_folder that
# makes a folder's target also says what the folder may include. tests/Arrows reads the written
# list and checks every #include of the tree against it.

# Records are built from the fields that matter, {.width = 1920}; the rest keeps its default.
# g++ alone judges: Clang, which only builds for fuzzing, has warnings of other names.
add_library(tarnwick_warnings INTERFACE)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    target_compile_options(tarnwick_warnings INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
        -Wshadow=local -Wno-missing-field-initializers -Werror
        # g++ 12 sees an overlap in "literal" + std::string&& that is not there (GCC bug 105329).
        -Wno-restrict)
endif()

set_property(GLOBAL PROPERTY tarnwick_arrows "")

# tarnwick_folder(FOLDER SOURCES file... [MAY_INCLUDE folder...] [PUBLIC library...] [PRIVATE library...])
#
# Makes the static library of FOLDER (a path from the root of the tree; the target's name is the
# path without its slashes), links the folders that it may include, and notes the arrows. Without
# SOURCES the folder is headers only.
function(tarnwick_folder folder)
    cmake_parse_arguments(PARSE_ARGV 1 given "" "" "SOURCES;MAY_INCLUDE;PUBLIC;PRIVATE")
    string(REPLACE "/" "" target ${folder})
    if(given_SOURCES)
        add_library(${target} STATIC ${given_SOURCES})
        set(scope PUBLIC)
        target_link_libraries(${target} PRIVATE tarnwick_warnings ${given_PRIVATE})
    else()
        add_library(${target} INTERFACE)
        set(scope INTERFACE)
    endif()
    target_include_directories(${target} ${scope} ${CMAKE_SOURCE_DIR})
    target_link_libraries(${target} ${scope} ${given_PUBLIC})
    foreach(below IN LISTS given_MAY_INCLUDE)
        string(REPLACE "/" "" library ${below})
        if(NOT TARGET ${library})
            message(FATAL_ERROR "${folder} may include ${below}, which is not a folder below it.")
        endif()
        target_link_libraries(${target} ${scope} ${library})
    endforeach()
    tarnwick_note_arrows(${folder} ${given_MAY_INCLUDE})
endfunction()

# tarnwick_program(NAME FOLDER SOURCES file... [MAY_INCLUDE folder...] [PRIVATE library...])
function(tarnwick_program name folder)
    cmake_parse_arguments(PARSE_ARGV 2 given "" "" "SOURCES;MAY_INCLUDE;PRIVATE")
    add_executable(${name} ${given_SOURCES})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
    target_link_libraries(${name} PRIVATE tarnwick_warnings ${given_PRIVATE})
    foreach(below IN LISTS given_MAY_INCLUDE)
        string(REPLACE "/" "" library ${below})
        target_link_libraries(${name} PRIVATE ${library})
    endforeach()
    tarnwick_note_arrows(${folder} ${given_MAY_INCLUDE})
endfunction()

# Notes "FOLDER: FOLDER..." for the written list; several calls for one folder add up.
function(tarnwick_note_arrows folder)
    list(JOIN ARGN " " below)
    set_property(GLOBAL APPEND PROPERTY tarnwick_arrows "${folder}: ${below}")
endfunction()

function(tarnwick_write_arrows file)
    get_property(arrows GLOBAL PROPERTY tarnwick_arrows)
    list(JOIN arrows "\n" text)
    file(WRITE ${file} "${text}\n")
endfunction()
