# cmake -D FILES=... -D OUTPUT=FILE.cpp -P Fingerprint.cmake: a source with the fingerprint of the files.
set(all)
foreach(file IN LISTS FILES)
    file(SHA256 ${file} one)
    string(APPEND all ${one})
endforeach()
string(SHA256 all "${all}")
string(SUBSTRING ${all} 0 16 short)
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT
"#include \"TarnwickMSL/Wire.h\"

const char* tarnwick::msl::wireForm() {
    return \"${short}\";
}
")
