# SPDX-License-Identifier: MIT
# What the tests of the tools have in common.
#     TOOL, COMPLETION, MANUAL, SCRATCH_DIR
get_filename_component(name "${TOOL}" NAME)
file(MAKE_DIRECTORY "${SCRATCH_DIR}")

# The standard input is `input`. What is printed is given to the caller.
function(expect wanted_code wanted_output wanted_complaint)
    file(WRITE "${SCRATCH_DIR}/input" "${input}")
    execute_process(COMMAND "${TOOL}" ${ARGN} WORKING_DIRECTORY "${SCRATCH_DIR}"
                    INPUT_FILE "${SCRATCH_DIR}/input"
                    RESULT_VARIABLE code OUTPUT_VARIABLE output ERROR_VARIABLE complaint)
    if(NOT code STREQUAL wanted_code OR NOT output MATCHES "^${wanted_output}$" OR
       NOT complaint MATCHES "^${wanted_complaint}$")
        message(FATAL_ERROR "${name} ${ARGN}: ${code}\n${output}${complaint}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

# Help and version; the manual page knows all options.
function(expect_help)
    foreach(call --help -h)
        expect(0 "usage: ${name} .*" "" ${call})
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
        expect(0 "${name} [0-9]+\\.[0-9]+\\.[0-9]+\nXerces-C[+][+] [^\n]+\n" "" ${call})
    endforeach()
endfunction()

# For each call, given as the words of a shell.
function(expect_full_disk_noticed)
    foreach(call IN LISTS ARGN)
        execute_process(COMMAND sh -c "\"$0\" ${call} >/dev/full" "${TOOL}"
                        WORKING_DIRECTORY "${SCRATCH_DIR}" RESULT_VARIABLE code ERROR_VARIABLE complaint)
        if(NOT code EQUAL 2 OR NOT complaint MATCHES "(standard output cannot be written|diff fails)\n$")
            message(FATAL_ERROR "${call} to a full disk: ${code} ${complaint}")
        endif()
    endforeach()
endfunction()

# What completion offers for the words of a call, of which the last is completed.
find_program(BASH bash)
if(NOT BASH)
    message(STATUS "There is no bash: its completion is not tried")
endif()
function(expect_completion wanted)
    if(NOT BASH)
        return()
    endif()
    math(EXPR last "${ARGC} - 1")
    execute_process(COMMAND "${BASH}" --norc -c "source \"$1\"; shift
        COMP_WORDS=(\"$@\") COMP_CWORD=${last}; _qrndom_tool \"$1\"; echo \"\${COMPREPLY[*]}\""
        "${BASH}" "${COMPLETION}" "${TOOL}" ${ARGN} OUTPUT_VARIABLE offered ERROR_VARIABLE offered)
    if(NOT offered STREQUAL "${wanted}\n")
        message(FATAL_ERROR "${ARGN}: offered are ${offered}")
    endif()
endfunction()
