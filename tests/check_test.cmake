# SPDX-License-Identifier: MIT
# The tool that says what is wrong with a file.
#     TOOL, SCRATCH_DIR
file(MAKE_DIRECTORY "${SCRATCH_DIR}")
file(WRITE "${SCRATCH_DIR}/good.xml" "<a><b>t</b></a>")
file(WRITE "${SCRATCH_DIR}/warned.xml"
    "<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a c CDATA ''><!ATTLIST a c CDATA ''>]><a/>")
file(WRITE "${SCRATCH_DIR}/bad.xml" "<!DOCTYPE a [<!ELEMENT a ANY>]>\n<a d=''>\n<c/></a>")

function(expect wanted_code wanted_output)
    execute_process(COMMAND "${TOOL}" ${ARGN} WORKING_DIRECTORY "${SCRATCH_DIR}"
                    RESULT_VARIABLE code OUTPUT_VARIABLE output ERROR_VARIABLE complaint)
    if(NOT code STREQUAL wanted_code OR NOT "${output}${complaint}" MATCHES "^${wanted_output}$")
        message(FATAL_ERROR "qrndom-check ${ARGN}: ${code}\n${output}${complaint}")
    endif()
endfunction()

expect(0 "" good.xml)
expect(0 "0 a\n  1 b  \"t\"\n\nElements by tag name.*\n" --outline good.xml)
expect(0 "warned.xml:1:[0-9]+: [^\n]+ \\(warning\\)\n" warned.xml)
expect(1 "bad.xml:2:[0-9]+: [^\n]+ 'd'[^\n]+\nbad.xml:3:[0-9]+: [^\n]+ 'c'\n.*absent.xml:0:0: [^\n]+\n"
       bad.xml good.xml absent.xml)
expect(2 "usage: qrndom-check .*")
expect(2 "usage: qrndom-check .*" --wrong good.xml)
