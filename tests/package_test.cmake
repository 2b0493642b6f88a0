# SPDX-License-Identifier: MIT
# Installs the library into an empty folder and builds and runs users' programs against it.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN}\nended with ${result}:\n${output}${errors}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect actual expected)
    if(NOT actual STREQUAL expected)
        message(FATAL_ERROR "expected \"${expected}\", got \"${actual}\"")
    endif()
endfunction()

file(REMOVE_RECURSE "${SCRATCH_DIR}")
set(prefix "${SCRATCH_DIR}/installed")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}")

# The tools find the library from where they were installed.
file(GLOB tools "${prefix}/*/qrndom-check" "${prefix}/*/qrndom-edit")
foreach(tool IN LISTS tools)
    run("${tool}" --version)
endforeach()

# The README's first program is its first block of C++.
file(READ "${README}" readme)
string(REGEX MATCH "```cpp\n([^`]*)```" block "${readme}")
file(WRITE "${SCRATCH_DIR}/first_program.cpp" "${CMAKE_MATCH_1}")

run(${CMAKE_COMMAND} -S "${CONSUMER_DIR}" -B "${SCRATCH_DIR}/consumer" -G Ninja
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${COMPILER}"
    "-DCMAKE_CXX_FLAGS=${CXX_FLAGS} -Wall -Wextra -Werror"
    "-DFIRST_PROGRAM=${SCRATCH_DIR}/first_program.cpp")
run(${CMAKE_COMMAND} --build "${SCRATCH_DIR}/consumer")
run("${SCRATCH_DIR}/consumer/root_name" "${DOCUMENT}")
expect("${output}" "observatory\n")

run(${CMAKE_COMMAND} -E chdir "${SCRATCH_DIR}" "${SCRATCH_DIR}/consumer/first_program")
string(REGEX MATCH "```text\n([^`]*)```" block "${readme}")
expect("${output}" "${CMAKE_MATCH_1}")

# The manual page's program is between .nf and .fi; it reads what the README's has written.
file(READ "${MANUAL}" manual)
string(REGEX MATCH "\n\\.nf\n(#include <iostream>.*})\n\\.fi\n" block "${manual}")
string(REPLACE "\\(rs" "\\" program "${CMAKE_MATCH_1}")
string(REPLACE "\\-" "-" program "${program}")
file(WRITE "${SCRATCH_DIR}/manual.cpp" "${program}\n")

# A compiler that is told of an older C++ begins with plain words, whichever header comes first.
file(GLOB headers "${prefix}/include/qrndom/*.h")
foreach(header IN LISTS headers)
    execute_process(COMMAND "${COMPILER}" -std=c++14 -fsyntax-only -x c++ "-I${prefix}/include" "${header}"
        RESULT_VARIABLE result ERROR_VARIABLE errors)
    string(REGEX MATCH "error: [^\n]*" first "${errors}")
    if(result EQUAL 0 OR NOT first MATCHES "QRNDOM needs C\\+\\+17")
        message(FATAL_ERROR "${header} as C++14: ${first}")
    endif()
endforeach()

# What is installed links to what is installed, and to headings that are there.
file(GLOB_RECURSE pages "${prefix}/*.md")
foreach(page IN LISTS pages)
    get_filename_component(folder "${page}" DIRECTORY)
    file(READ "${page}" text)
    string(REGEX REPLACE "```[^`]*```" "" text "${text}")
    string(REPLACE "](" "link(" text "${text}") # brackets would keep a list from being taken apart
    string(REGEX REPLACE "[][]" "" text "${text}")
    string(REGEX MATCHALL "link\\([^) ]+\\)" links "${text}")
    foreach(link IN LISTS links)
        string(REGEX MATCH "^link\\(([^#]*)#?(.*)\\)$" link "${link}")
        set(file "${CMAKE_MATCH_1}")
        set(heading "${CMAKE_MATCH_2}")
        set(target "${page}")
        if(NOT file STREQUAL "")
            set(target "${folder}/${file}")
        endif()
        if(NOT EXISTS "${target}")
            message(FATAL_ERROR "${page} links to ${file}, which is not installed")
        endif()
        file(STRINGS "${target}" headings REGEX "^#+ ")
        string(TOLOWER "${headings}" headings)
        string(REGEX REPLACE "[^a-z0-9 ;-]" "" headings "${headings}")
        string(REPLACE " " "-" headings "${headings}")
        if(NOT heading STREQUAL "" AND NOT ";${headings};" MATCHES ";-${heading};")
            message(FATAL_ERROR "${page} links to the heading ${heading}, which is not in ${target}")
        endif()
    endforeach()
endforeach()

# The same by pkg-config.
file(GLOB_RECURSE pc "${prefix}/*/qrndom.pc")
get_filename_component(pc_dir "${pc}" DIRECTORY)
get_filename_component(lib_dir "${pc_dir}" DIRECTORY)
set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
run(pkg-config --cflags --libs qrndom)
separate_arguments(flags UNIX_COMMAND "${CXX_FLAGS} ${output}")
run("${COMPILER}" -std=c++17 "${CONSUMER_DIR}/root_name.cpp" -o "${SCRATCH_DIR}/root_name" ${flags}
    "-Wl,-rpath,${lib_dir}")
run("${SCRATCH_DIR}/root_name" "${DOCUMENT}")
expect("${output}" "observatory\n")
run("${COMPILER}" -std=c++17 "${SCRATCH_DIR}/manual.cpp" -o "${SCRATCH_DIR}/manual" ${flags}
    "-Wl,-rpath,${lib_dir}")
run(${CMAKE_COMMAND} -E chdir "${SCRATCH_DIR}" "${SCRATCH_DIR}/manual")
expect("${output}" "Ἰλιάς\n")
