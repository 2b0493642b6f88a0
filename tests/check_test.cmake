# SPDX-License-Identifier: MIT
# The tool that says what is wrong with a file.
#     TOOL, COMPLETION, MANUAL, SCRATCH_DIR
file(MAKE_DIRECTORY "${SCRATCH_DIR}")
file(WRITE "${SCRATCH_DIR}/good.xml" "<a><b>t</b></a>")
file(WRITE "${SCRATCH_DIR}/warned.xml"
    "<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a c CDATA ''><!ATTLIST a c CDATA ''>]><a/>")
file(WRITE "${SCRATCH_DIR}/bad.xml" "<!DOCTYPE a [<!ELEMENT a ANY>]>\n<a d=''>\n<c/></a>")

# The standard input is `input`. What is printed is given to the caller.
function(expect wanted_code wanted_output wanted_complaint)
    file(WRITE "${SCRATCH_DIR}/input" "${input}")
    execute_process(COMMAND "${TOOL}" ${ARGN} WORKING_DIRECTORY "${SCRATCH_DIR}"
                    INPUT_FILE "${SCRATCH_DIR}/input"
                    RESULT_VARIABLE code OUTPUT_VARIABLE output ERROR_VARIABLE complaint)
    if(NOT code STREQUAL wanted_code OR NOT output MATCHES "^${wanted_output}$" OR
       NOT complaint MATCHES "^${wanted_complaint}$")
        message(FATAL_ERROR "qrndom-check ${ARGN}: ${code}\n${output}${complaint}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

# What is wrong goes to the standard error stream in every mode.
expect(0 "" "" good.xml)
expect(0 "0 a\n  1 b  \"t\"\n\nElements by tag name.*\n" "" --outline good.xml)
expect(1 "0 a\n.*" "bad.xml:2:.*" --outline bad.xml good.xml)
expect(0 "" "warned.xml:1:[0-9]+: [^\n]+ \\(warning\\)\n" warned.xml)
expect(1 "" "bad.xml:2:[0-9]+: [^\n]+ 'd'[^\n]+\nbad.xml:3:[0-9]+: [^\n]+ 'c'\n.*absent.xml: [^\n]+\n"
       bad.xml good.xml absent.xml)
expect(1 "" "\\.: is a folder\n" .)

# How documents are read.
file(WRITE "${SCRATCH_DIR}/part.dtd" "<!ELEMENT a (b)><!ELEMENT b (#PCDATA)><!ATTLIST a c CDATA 'd'>")
file(WRITE "${SCRATCH_DIR}/part.ent" "from outside")
file(WRITE "${SCRATCH_DIR}/typed.xml"
     "<!DOCTYPE a SYSTEM 'part.dtd' [<!ENTITY e SYSTEM 'part.ent'>]>\n<a>\n <b>&e;</b>\n</a>")
file(WRITE "${SCRATCH_DIR}/lost.xml" "<!DOCTYPE a SYSTEM 'absent.dtd'>\n<a/>")
set(flat "<[?]xml[^\n]*\n<!DOCTYPE[^\n]*\n<a")
expect(0 "" "" --no-validate bad.xml)
expect(1 "" "lost.xml:1:.*" lost.xml)
expect(0 "" "lost.xml:1:[^\n]*absent.dtd[^\n]* \\(warning\\)\n" --no-validate lost.xml)
expect(1 "" "good.xml:1:.*" --always-validate good.xml)
expect(0 "" "" --always-validate typed.xml)
expect(1 "" "typed.xml:1:[^\n]*\n" --refuse-doctype typed.xml good.xml)
expect(0 "${flat}>\n <b>from outside</b>\n</a>\n" "" --format --indent 0 typed.xml)
expect(0 "${flat}>\n <b/>\n</a>\n" ".*part.dtd[^\n]* \\(warning\\)\n.*part.ent.*"
       --no-validate --no-external --format --indent 0 typed.xml)

# Formatting: messages to the standard error stream, documents to the standard output or in place.
expect(0 "<[?]xml version=\"1.0\" encoding=\"UTF-8\"[?]>\n<a>\n  <b>t</b>\n</a>\n" "" --format good.xml)
expect(1 "<[?]xml[^\n]*\n<a><b>t</b></a>\n" "bad.xml:2:.*" bad.xml --format --indent=0 -- good.xml)
file(WRITE "${SCRATCH_DIR}/-wide.xml" "<a><b><c/></b></a>")
file(COPY_FILE "${SCRATCH_DIR}/bad.xml" "${SCRATCH_DIR}/kept.xml")
expect(1 "" "kept.xml:2:.*" --format --indent 1 --in-place -- -wide.xml kept.xml)
file(READ "${SCRATCH_DIR}/-wide.xml" wide)
file(READ "${SCRATCH_DIR}/bad.xml" bad)
file(READ "${SCRATCH_DIR}/kept.xml" kept)
if(NOT wide MATCHES "[?]>\n<a>\n <b>\n  <c/>\n </b>\n</a>\n$" OR NOT kept STREQUAL bad)
    message(FATAL_ERROR "--in-place: ${wide}${kept}")
endif()

# Encodings and files of their own.
file(WRITE "${SCRATCH_DIR}/wide.xml" "<a>é</a>")
file(REMOVE "${SCRATCH_DIR}/out.xml")
expect(0 "<[?]xml version=\"1.0\" encoding=\"US-ASCII\"[?]>\n<a>&#xE9;</a>\n" ""
       --format --encoding US-ASCII -o - wide.xml)
expect(1 "" "wide.xml: [^\n]*no-such[^\n]*\n" --format --encoding no-such wide.xml)
expect(0 "" "" --format -o out.xml good.xml)
expect(1 "" "bad.xml:2:.*" --format --output=out.xml bad.xml)
expect(1 "" "absent/out.xml: [^\n]+\n" --format -oabsent/out.xml good.xml)
file(READ "${SCRATCH_DIR}/out.xml" out)
if(NOT out MATCHES "\n<a>\n  <b>t</b>\n</a>\n$")
    message(FATAL_ERROR "--output: ${out}")
endif()

# The standard input and the standard output.
set(input "<a>\n</b>")
expect(1 "" "-:2:[0-9]+: [^\n]+\n" -)
set(input "<a><!--c--></a>")
expect(0 "<[?]xml[^\n]*\n<a>\n  <!--c-->\n</a>\n" "" --format -)
foreach(call --help -h)
    expect(0 "usage: qrndom-check .*in-place.*" "" ${call})
endforeach()
file(READ "${MANUAL}" manual)
string(REPLACE "\\-" "-" manual "${manual}")
string(REGEX MATCHALL "  --?[a-zA-Z][a-z-]*|, --[a-z-]+" options "${output}")
foreach(option IN LISTS options)
    string(REGEX REPLACE "^[ ,]+" "" option "${option}")
    if(NOT manual MATCHES "\n\\.TP\n\\.B[^\n]* ${option}[ \",\n]")
        message(FATAL_ERROR "The manual page does not know ${option}")
    endif()
endforeach()
foreach(call --version -V)
    expect(0 "qrndom-check [0-9]+\\.[0-9]+\\.[0-9]+\nXerces-C[+][+] [^\n]+\n" "" ${call})
endforeach()
foreach(call "--help" "--outline good.xml" "--format good.xml")
    execute_process(COMMAND sh -c "\"$0\" ${call} >/dev/full" "${TOOL}" WORKING_DIRECTORY "${SCRATCH_DIR}"
                    RESULT_VARIABLE code ERROR_VARIABLE complaint)
    if(NOT code EQUAL 2 OR NOT complaint MATCHES "standard output cannot be written\n$")
        message(FATAL_ERROR "${call} to a full disk: ${code} ${complaint}")
    endif()
endforeach()

# Wrong calls.
expect(2 "" "usage: qrndom-check .*")
expect(2 "" ".*--wrong.*usage: qrndom-check .*" --wrong good.xml)
expect(2 "" ".*from 0 to 80\nusage.*" --format --indent 81 good.xml)
expect(2 "" ".*from 0 to 80\nusage.*" --format --indent 2x good.xml)
foreach(call "--indent;2;good.xml" "--in-place;good.xml" "--format;--outline;good.xml"
             "--encoding;UTF-8;good.xml" "-o;out.xml;good.xml")
    expect(2 "" ".*go with --format.*" ${call})
endforeach()
foreach(call "good.xml;bad.xml" "--in-place;good.xml")
    expect(2 "" ".*takes one FILE.*" --format -o out.xml ${call})
endforeach()
expect(2 "" ".*has no place\n.*" --format --in-place -)

# What completion offers for the words of a call, of which the last is completed.
find_program(BASH bash)
function(expect_completion wanted)
    math(EXPR last "${ARGC} - 1")
    execute_process(COMMAND "${BASH}" --norc -c "source \"$1\"; shift
        COMP_WORDS=(\"$@\") COMP_CWORD=${last}; _qrndom_check \"$1\"; echo \"\${COMPREPLY[*]}\""
        "${BASH}" "${COMPLETION}" "${TOOL}" ${ARGN} OUTPUT_VARIABLE offered ERROR_VARIABLE offered)
    if(NOT offered STREQUAL "${wanted}\n")
        message(FATAL_ERROR "${ARGN}: offered are ${offered}")
    endif()
endfunction()
if(BASH)
    expect_completion("--indent --in-place" --format --in)
    expect_completion("--no-validate" --no-v)
    expect_completion("UTF-8 UTF-16" --encoding UTF)
    expect_completion("8" --indent = 8)
    expect_completion("" go)
else()
    message(STATUS "There is no bash: its completion was not tried")
endif()
