# SPDX-License-Identifier: MIT
# The programs of docs/guide.md. Included by the build, this makes them; run as a script, it runs them
# in the guide's order, each in a process of its own, and compares what they print with the guide.
#
# A block of C++ that holds a main is a program; any other is the inside of a function. A block of text
# or log that follows, before any other block, is what it prints or logs.
if(NOT CMAKE_SCRIPT_MODE_FILE)
    set(GUIDE "${PROJECT_SOURCE_DIR}/docs/guide.md")
    set(SCRATCH_DIR "${CMAKE_CURRENT_BINARY_DIR}/guide")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${GUIDE}")
endif()

file(READ "${GUIDE}" rest)
set(line 1) # of the guide, at the start of the rest
set(number 0)
set(fence "(^|\n)```([^\n]*)\n")

# Takes `length` characters off the rest and counts their lines.
macro(take length)
    string(SUBSTRING "${rest}" 0 ${length} taken)
    string(SUBSTRING "${rest}" ${length} -1 rest)
    string(REGEX MATCHALL "\n" ends "${taken}")
    list(LENGTH ends count)
    math(EXPR line "${line} + ${count}")
endmacro()

while("${rest}" MATCHES "${fence}")
    set(kind "${CMAKE_MATCH_2}")
    string(FIND "${rest}" "${CMAKE_MATCH_0}" begin)
    string(LENGTH "${CMAKE_MATCH_0}" length)
    math(EXPR begin "${begin} + ${length}")
    take(${begin})
    set(first_line ${line})
    string(FIND "${rest}" "```" length)
    take(${length})
    set(block "${taken}")
    take(3)
    if(kind STREQUAL "cpp")
        math(EXPR number "${number} + 1")
        set(example ${number})
        set(line_${number} ${first_line})
        set(printed_${number} "")
        set(marked "#line ${first_line} \"${GUIDE}\"\n${block}")
        if(block MATCHES "int main\\(")
            set(program_${number} "${marked}")
        else()
            string(APPEND functions "static void example${number}("
                                    "[[maybe_unused]] PelDOMUtilites& services) {\n${marked}}\n")
            string(APPEND calls "    case ${number}: example${number}(services); break;\n")
        endif()
    elseif(kind STREQUAL "text" AND DEFINED example)
        set(printed_${example} "${block}")
    elseif(kind STREQUAL "log" AND DEFINED example)
        set(logged_${example} "${block}")
    else()
        unset(example)
    endif()
endwhile()

if(NOT CMAKE_SCRIPT_MODE_FILE)
    function(guide_program name text)
        set(source "${SCRATCH_DIR}/${name}.cpp")
        file(WRITE "${source}" "${text}")
        add_executable(${name} "${source}")
        qrndom_whole_library(${name} LOG_FILE "guide.log")
        set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${SCRATCH_DIR}")
    endfunction()

    foreach(example RANGE 1 ${number})
        if(DEFINED program_${example})
            guide_program(guide_program_${example} "${program_${example}}")
        endif()
    endforeach()
    guide_program(guide_examples "#include <cstdlib>\n#include <iostream>\n#include <qrndom/QRNDOM.h>\n
${functions}
int main(int, char** arguments) {
    PelDOMUtilites& services = *PelDOMUtilites::getUtilities(PelDOM::PLATFORM_XERCES);
    switch (std::atoi(arguments[1])) {
${calls}    default: return 2;
    }
    PelDOMUtilites::releaseUtilities();
}
")
    add_test(NAME guide_test COMMAND ${CMAKE_COMMAND}
        -DGUIDE=${GUIDE} -DSCRATCH_DIR=${SCRATCH_DIR} -P ${CMAKE_CURRENT_LIST_FILE})
    return()
endif()

foreach(example RANGE 1 ${number})
    set(command guide_examples ${example})
    if(DEFINED program_${example})
        set(command guide_program_${example})
    endif()
    file(REMOVE "${SCRATCH_DIR}/guide.log")
    list(TRANSFORM command PREPEND "${SCRATCH_DIR}/" AT 0)
    execute_process(COMMAND ${command} WORKING_DIRECTORY "${SCRATCH_DIR}"
        RESULT_VARIABLE result OUTPUT_VARIABLE printed ERROR_VARIABLE errors)
    if(NOT result STREQUAL "0" OR NOT errors STREQUAL "" OR
       NOT printed STREQUAL printed_${example})
        message(SEND_ERROR "${GUIDE}:${line_${example}}: the guide says\n${printed_${example}}"
                           "The program ended with ${result} and printed\n${printed}${errors}")
    endif()
    file(READ "${SCRATCH_DIR}/guide.log" logged)
    if(DEFINED logged_${example} AND NOT logged STREQUAL logged_${example})
        message(SEND_ERROR "${GUIDE}:${line_${example}}: the guide says\n${logged_${example}}"
                           "The log says\n${logged}")
    endif()
endforeach()
