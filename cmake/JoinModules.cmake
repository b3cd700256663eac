# cmake -DFILES=name;... -DROOT=folder -DOUTPUT=file.js -P JoinModules.cmake
#
# Joins modules to one that imports nothing, because browsers do not load modules from files. The
# files are in an order in which each comes after those that it imports. An import and an export are
# one line each, and no two modules declare the same name; tests/web checks both.
set(text "")
foreach(file IN LISTS FILES)
    file(READ ${ROOT}/${file} content)
    string(REGEX REPLACE "(^|\n)import [^\n]*" "" content "${content}")
    string(REGEX REPLACE "(^|\n)export " "\\1" content "${content}")
    string(APPEND text "${content}\n")
endforeach()
file(WRITE ${OUTPUT} "${text}")
