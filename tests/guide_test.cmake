# SPDX-License-Identifier: MIT
# The programs of docs/guide.md. Included by the build, this makes them; run as a script, it runs them
# in the guide's order, in one folder, and compares what they print with the guide.
#
# A block of C++ is a whole file. Its first line is the command that builds it, which also says what the
# build links it with. The block right after it is what it prints (text), logs (log), or says when it
# ends by an exception (abort).
if(NOT CMAKE_SCRIPT_MODE_FILE)
    set(GUIDE "${PROJECT_SOURCE_DIR}/docs/guide.md")
    set(SCRATCH_DIR "${CMAKE_CURRENT_BINARY_DIR}/guide")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${GUIDE}")
endif()

file(READ "${GUIDE}" rest)
set(line 1) # of the guide, at the start of the rest
set(programs "")
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
        if(NOT block MATCHES "^// c\\+\\+ -std=c\\+\\+17( [^\n]*)? ([a-z_]+)\\.cpp -o ([a-z_.]+)( [^\n]*)?\n")
            message(FATAL_ERROR "${GUIDE}:${first_line}: a program begins with the command that builds it")
        endif()
        set(options "${CMAKE_MATCH_1}")
        set(program ${CMAKE_MATCH_2})
        set(made ${CMAKE_MATCH_3})
        set(libraries_${program} "${CMAKE_MATCH_4}")
        set(is_plugin_${program} FALSE)
        if(options MATCHES " -shared -fPIC")
            set(is_plugin_${program} TRUE)
        endif()
        if(DEFINED source_${program} OR NOT made MATCHES "^${program}(\\.so)?$" OR
           NOT libraries_${program} MATCHES "^( \\$\\(pkg-config --cflags --libs qrndom( xerces-c)?\\))?$")
            message(FATAL_ERROR "${GUIDE}:${first_line}: another name, or libraries that are not known")
        endif()
        list(APPEND programs ${program})
        set(line_${program} ${first_line})
        set(source_${program} "#line ${first_line} \"${GUIDE}\"\n${block}")
    elseif(kind MATCHES "^(text|log|abort)$" AND DEFINED program)
        set(${kind}_${program} "${block}")
        unset(program)
    else()
        unset(program)
    endif()
endwhile()

if(NOT CMAKE_SCRIPT_MODE_FILE)
    # As it is installed, with a log of its own.
    add_library(guide_library SHARED)
    qrndom_whole_library(guide_library LOG_FILE "test.log")
    target_link_libraries(guide_library PRIVATE qrndom_exports)
    set_target_properties(guide_library PROPERTIES OUTPUT_NAME QRNDOM
        SOVERSION ${PROJECT_VERSION_MAJOR} LIBRARY_OUTPUT_DIRECTORY "${SCRATCH_DIR}")

    foreach(program IN LISTS programs)
        file(WRITE "${SCRATCH_DIR}/${program}.cpp" "${source_${program}}")
        if(is_plugin_${program})
            add_library(guide_${program} MODULE "${SCRATCH_DIR}/${program}.cpp")
        else()
            add_executable(guide_${program} "${SCRATCH_DIR}/${program}.cpp")
        endif()
        set_target_properties(guide_${program} PROPERTIES PREFIX "" OUTPUT_NAME ${program}
            RUNTIME_OUTPUT_DIRECTORY "${SCRATCH_DIR}" LIBRARY_OUTPUT_DIRECTORY "${SCRATCH_DIR}")
        target_link_libraries(guide_${program} PRIVATE qrndom_settings Threads::Threads)
        if(libraries_${program})
            target_include_directories(guide_${program} PRIVATE
                "${PROJECT_SOURCE_DIR}/include" "${PROJECT_BINARY_DIR}/include")
            target_link_libraries(guide_${program} PRIVATE guide_library)
        else()
            # It loads the library. ICU stays: it loses its own caches when it goes, and the leak
            # sanitizer sees that.
            target_link_libraries(guide_${program} PRIVATE ${CMAKE_DL_LIBS}
                -Wl,--no-as-needed ICU::uc -Wl,--as-needed)
        endif()
        if(libraries_${program} MATCHES "xerces-c")
            target_link_libraries(guide_${program} PRIVATE XercesC::XercesC)
        endif()
    endforeach()
    add_test(NAME guide_test COMMAND ${CMAKE_COMMAND}
        -DGUIDE=${GUIDE} -DSCRATCH_DIR=${SCRATCH_DIR} -DARE_REMOTE_READ=${QRNDOM_REMOTE_ENTITIES}
        -P ${CMAKE_CURRENT_LIST_FILE})
    return()
endif()

file(GLOB documents "${SCRATCH_DIR}/*.xml")
file(REMOVE "${SCRATCH_DIR}/test.log" ${documents})
foreach(program IN LISTS programs)
    if(is_plugin_${program})
        continue()
    endif()
    if(ARE_REMOTE_READ AND source_${program} MATCHES "'http://[a-z0-9./]*\\.dtd'")
        message(STATUS "Left out: ${program}, whose document type is on the network")
        continue()
    endif()
    file(WRITE "${SCRATCH_DIR}/test.log" "")
    # At the end the leak sanitizer looks into the thread-local memory of libraries that are gone, and dies.
    set(without_leaks)
    if(source_${program} MATCHES "dlclose")
        set(without_leaks ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0)
    endif()
    execute_process(COMMAND ${without_leaks} "${SCRATCH_DIR}/${program}"
        WORKING_DIRECTORY "${SCRATCH_DIR}"
        RESULT_VARIABLE result OUTPUT_VARIABLE printed ERROR_VARIABLE errors)
    set(wanted_result 0)
    if(DEFINED abort_${program})
        set(wanted_result "Subprocess aborted")
    endif()
    # The engine's namespace has the number of its release.
    string(REGEX REPLACE "xercesc_[0-9]_[0-9]" "xercesc_3_2" errors "${errors}")
    # libc++ has words of its own.
    string(REGEX REPLACE "^libc[+][+]abi: terminating with uncaught exception of type ([^\n]*)"
        "terminate called after throwing an instance of '\\1'" errors "${errors}")
    if(NOT result STREQUAL wanted_result OR NOT printed STREQUAL "${text_${program}}" OR
       NOT errors STREQUAL "${abort_${program}}")
        message(SEND_ERROR "${GUIDE}:${line_${program}}: the guide says\n${text_${program}}"
                           "${abort_${program}}"
                           "The program ended with ${result} and printed\n${printed}${errors}")
    endif()
    file(READ "${SCRATCH_DIR}/test.log" logged)
    if(DEFINED log_${program} AND NOT logged STREQUAL log_${program})
        message(SEND_ERROR "${GUIDE}:${line_${program}}: the guide says\n${log_${program}}"
                           "The log says\n${logged}")
    endif()
endforeach()
