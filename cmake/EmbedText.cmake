# cmake -DFILES=name;... -DROOT=folder -DOUTPUT=file.cpp -P EmbedText.cmake
#
# Writes the files as a table of (name, text), for tarnwick::msl::libraryFiles. Texts are divided
# into several raw strings, because compilers limit the length of a literal.
set(text "#include \"TarnwickMSL/Translation/FrontEnd/LibraryText.h\"\n\nnamespace tarnwick::msl {\n\n")
string(APPEND text "std::span<const LibraryFile> libraryFiles() {\n    static const LibraryFile files[] = {\n")
foreach(file IN LISTS FILES)
    file(READ ${ROOT}/${file} content)
    string(REPLACE "\n#" ")~~~\"\n                R\"~~~(\n#" content "${content}")
    string(APPEND text "        {\"${file}\", R\"~~~(${content})~~~\"},\n")
endforeach()
string(APPEND text "    };\n    return files;\n}\n\n} // namespace tarnwick::msl\n")
file(WRITE ${OUTPUT} "${text}")
