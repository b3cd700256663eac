# cmake -DFILE=file -DHEADER=header -DNAME=name -DOUTPUT=file.cpp -P EmbedFile.cmake
#
# Writes the definition of tarnwick::NAME(), the text of FILE, which HEADER declares. The text is
# divided into several raw strings, because compilers limit the length of a literal.
file(READ ${FILE} content)
string(REPLACE "\n//" ")~~~\"\n        R\"~~~(\n//" content "${content}")
file(WRITE ${OUTPUT} "#include \"${HEADER}\"\n\nnamespace tarnwick {\n\nstd::string_view ${NAME}() {\n    return R\"~~~(${content})~~~\";\n}\n\n} // namespace tarnwick\n")
