# SPDX-License-Identifier: MIT
# The tool that says what is wrong with a file.
#     TOOL, SCRATCH_DIR
file(MAKE_DIRECTORY "${SCRATCH_DIR}")
file(WRITE "${SCRATCH_DIR}/good.xml" "<a><b>t</b></a>")
file(WRITE "${SCRATCH_DIR}/warned.xml"
    "<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a c CDATA ''><!ATTLIST a c CDATA ''>]><a/>")
file(WRITE "${SCRATCH_DIR}/bad.xml" "<!DOCTYPE a [<!ELEMENT a ANY>]>\n<a d=''>\n<c/></a>")

# The standard input is `input`.
function(expect wanted_code wanted_output)
    file(WRITE "${SCRATCH_DIR}/input" "${input}")
    execute_process(COMMAND "${TOOL}" ${ARGN} WORKING_DIRECTORY "${SCRATCH_DIR}"
                    INPUT_FILE "${SCRATCH_DIR}/input"
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
expect(1 "\\.:[^\n]* is a folder\n" .)

# Formatting: messages to the standard error stream, documents to the standard output or in place.
expect(0 "<[?]xml version=\"1.0\" encoding=\"UTF-8\"[?]>\n<a>\n  <b>t</b>\n</a>\n" --format good.xml)
expect(1 "<[?]xml[^\n]*\n<a><b>t</b></a>\nbad.xml:2:.*" bad.xml --format --indent=0 -- good.xml)
file(WRITE "${SCRATCH_DIR}/-wide.xml" "<a><b><c/></b></a>")
file(COPY_FILE "${SCRATCH_DIR}/bad.xml" "${SCRATCH_DIR}/kept.xml")
expect(1 "kept.xml:2:.*" --format --indent 1 --in-place -- -wide.xml kept.xml)
file(READ "${SCRATCH_DIR}/-wide.xml" wide)
file(READ "${SCRATCH_DIR}/bad.xml" bad)
file(READ "${SCRATCH_DIR}/kept.xml" kept)
if(NOT wide MATCHES "[?]>\n<a>\n <b>\n  <c/>\n </b>\n</a>\n$" OR NOT kept STREQUAL bad)
    message(FATAL_ERROR "--in-place: ${wide}${kept}")
endif()

# The standard input and the standard output.
set(input "<a>\n</b>")
expect(1 "-:2:[0-9]+: [^\n]+\n" -)
set(input "<a><!--c--></a>")
expect(0 "<[?]xml[^\n]*\n<a>\n  <!--c-->\n</a>\n" --format -)
expect(0 "usage: qrndom-check .*in-place.*" --help)
expect(0 "qrndom-check [0-9]+\\.[0-9]+\\.[0-9]+\n" --version)
foreach(call "--help" "--outline good.xml" "--format good.xml" "bad.xml")
    execute_process(COMMAND sh -c "\"$0\" ${call} >/dev/full" "${TOOL}" WORKING_DIRECTORY "${SCRATCH_DIR}"
                    RESULT_VARIABLE code ERROR_VARIABLE complaint)
    if(NOT code EQUAL 2 OR NOT complaint MATCHES "standard output cannot be written\n$")
        message(FATAL_ERROR "${call} to a full disk: ${code} ${complaint}")
    endif()
endforeach()

# Wrong calls.
expect(2 "usage: qrndom-check .*")
expect(2 ".*--wrong.*usage: qrndom-check .*" --wrong good.xml)
expect(2 ".*from 0 to 80\nusage.*" --format --indent 81 good.xml)
expect(2 ".*from 0 to 80\nusage.*" --format --indent 2x good.xml)
foreach(call "--indent;2;good.xml" "--in-place;good.xml" "--format;--outline;good.xml")
    expect(2 ".*go with --format.*" ${call})
endforeach()
expect(2 ".*has no place\n.*" --format --in-place -)
