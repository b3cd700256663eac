# Writes OUTPUT, a header with the commit of the tree in SOURCE; empty outside a clone.
execute_process(COMMAND git -C ${SOURCE} log -1 "--format=%h of %cs"
    OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    set(commit "")
endif()
file(WRITE ${OUTPUT} "#define TARNWICK_COMMIT \"${commit}\"\n")
