# One target per folder. The arrows between folders and rooms are stated once: the call of
# tarnwick_folder that makes the target of a folder also states which folders it may include.
# tarnwick_room does this for a room, a folder below it without a target of its own.
# tests/tree/ArrowsTests reads the written list and checks every #include of the tree.

# Records are built from some fields, {.width = 1920}; the others keep their defaults. Only g++ has
# these warnings: Clang, used for fuzzing only, names its warnings differently.
add_library(tarnwick_warnings INTERFACE)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    target_compile_options(tarnwick_warnings INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
        -Wshadow=local -Wno-missing-field-initializers -Werror
        # g++ 12 reports a false overlap in "literal" + std::string&& (GCC bug 105329).
        -Wno-restrict)
endif()

set_property(GLOBAL PROPERTY tarnwick_arrows "")

# tarnwick_folder(FOLDER SOURCES file... [MAY_INCLUDE folder...] [FACES header...] [PUBLIC
# library...] [PRIVATE library...])
#
# Makes the static library of FOLDER (a path from the root of the tree; the target's name is the
# path without its slashes), links the folders that it may include, and records the arrows. Without
# SOURCES the folder has headers only. With FACES, other folders may include no other header that is
# directly in FOLDER.
function(tarnwick_folder folder)
    cmake_parse_arguments(PARSE_ARGV 1 given "" "" "SOURCES;MAY_INCLUDE;FACES;PUBLIC;PRIVATE")
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
    tarnwick_note_faces(${folder} ${folder} ${given_FACES})
endfunction()

# tarnwick_room(FOLDER/ROOM [MAY_INCLUDE room...] [FACES header...] [PRIVATE])
#
# Records a room of FOLDER. MAY_INCLUDE names rooms of FOLDER that were recorded before, so there is
# no ring, or FOLDER itself for the headers directly in it; the files directly in FOLDER then do not
# include this room. A room may include all folders that FOLDER may include. FACES are headers
# directly in FOLDER that belong to the room, with their sources. Other folders include the headers
# of a room only if it is not PRIVATE.
function(tarnwick_room room)
    cmake_parse_arguments(PARSE_ARGV 1 given "PRIVATE" "" "MAY_INCLUDE;FACES")
    get_filename_component(folder ${room} DIRECTORY)
    if(NOT IS_DIRECTORY ${CMAKE_SOURCE_DIR}/${room})
        message(FATAL_ERROR "The room ${room} is not a folder.")
    endif()
    get_property(noted GLOBAL PROPERTY tarnwick_rooms)
    foreach(below IN LISTS given_MAY_INCLUDE)
        if(NOT below IN_LIST noted AND NOT below STREQUAL folder)
            message(FATAL_ERROR "${room} may include ${below}, which is not a room recorded before.")
        endif()
    endforeach()
    set_property(GLOBAL APPEND PROPERTY tarnwick_rooms ${room})
    list(JOIN given_MAY_INCLUDE " " below)
    set(access open)
    if(given_PRIVATE)
        set(access private)
    endif()
    set_property(GLOBAL APPEND PROPERTY tarnwick_arrows "room ${room} ${access}: ${below}")
    tarnwick_note_faces(${folder} ${room} ${given_FACES})
endfunction()

# Adds to an executable what the sanitizers need.
function(tarnwick_sanitize name)
    if(CMAKE_CXX_FLAGS MATCHES -fsanitize)
        target_sources(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests/sanitizers/KeepLibraries.cpp)
        # g++ 12 then reports std::regex (GCC bug 105562).
        target_compile_options(${name} PRIVATE -Wno-maybe-uninitialized)
    endif()
endfunction()

# Adds to an executable with Qt what the sanitizer for threads needs.
function(tarnwick_sanitize_qt name)
    if(CMAKE_CXX_FLAGS MATCHES -fsanitize=thread)
        set(handover ${CMAKE_SOURCE_DIR}/tests/sanitizers/QtHandover.cpp)
        target_sources(${name} PRIVATE ${handover})
        set_source_files_properties(${handover} PROPERTIES COMPILE_OPTIONS -fno-sanitize=thread)
    endif()
endfunction()

# tarnwick_program(NAME FOLDER SOURCES file... [MAY_INCLUDE folder...] [PRIVATE library...])
function(tarnwick_program name folder)
    cmake_parse_arguments(PARSE_ARGV 2 given "" "" "SOURCES;MAY_INCLUDE;PRIVATE")
    add_executable(${name} ${given_SOURCES})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
    tarnwick_sanitize(${name})
    target_link_libraries(${name} PRIVATE tarnwick_warnings ${given_PRIVATE})
    foreach(below IN LISTS given_MAY_INCLUDE)
        string(REPLACE "/" "" library ${below})
        target_link_libraries(${name} PRIVATE ${library})
    endforeach()
    tarnwick_note_arrows(${folder} ${given_MAY_INCLUDE})
endfunction()

# Records "FOLDER: FOLDER..." for the written list. The arrows of several calls for one folder are
# added.
function(tarnwick_note_arrows folder)
    list(JOIN ARGN " " below)
    set_property(GLOBAL APPEND PROPERTY tarnwick_arrows "${folder}: ${below}")
endfunction()

# Records "face FOLDER/HEADER: OWNER". The owner is the folder itself or one of its rooms.
function(tarnwick_note_faces folder owner)
    foreach(face IN LISTS ARGN)
        if(NOT EXISTS ${CMAKE_SOURCE_DIR}/${folder}/${face})
            message(FATAL_ERROR "${folder}/${face} is named as a face and is not a file.")
        endif()
        set_property(GLOBAL APPEND PROPERTY tarnwick_arrows "face ${folder}/${face}: ${owner}")
    endforeach()
endfunction()

function(tarnwick_write_arrows file)
    get_property(arrows GLOBAL PROPERTY tarnwick_arrows)
    list(JOIN arrows "\n" text)
    file(WRITE ${file} "${text}\n")
endfunction()
