# SPDX-License-Identifier: MIT
# Installs the library and stops a program in gdb, which finds the library's printers by itself: once
# with the library as it was built, once without its symbols, as packages have it.
find_program(GDB gdb)
if(GDB)
    execute_process(COMMAND "${GDB}" -nx -batch -ex "python import gdb.printing" RESULT_VARIABLE result
        OUTPUT_QUIET ERROR_QUIET)
endif()
if(NOT GDB OR result)
    message(STATUS "Skipped: there is no gdb with Python")
    return()
endif()

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(result AND output MATCHES "ptrace: Operation not permitted")
        message(STATUS "Skipped: gdb may not trace programs here")
    elseif(result)
        message(FATAL_ERROR "${ARGN}\nended with ${result}:\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${SCRATCH_DIR}")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${SCRATCH_DIR}")
file(GLOB_RECURSE library "${SCRATCH_DIR}/*/libQRNDOM.so")
get_filename_component(folder "${library}" DIRECTORY)
separate_arguments(flags UNIX_COMMAND "${CXX_FLAGS}")
# Where the library has no debug information, the program's own must hold the library's classes.
if(COMPILER_ID STREQUAL "GNU")
    list(APPEND flags -femit-class-debug-always)
else()
    list(APPEND flags -fstandalone-debug)
endif()
run("${COMPILER}" -std=c++17 ${flags} -g -O0 "-I${SCRATCH_DIR}/include" "${SOURCES}/shown.cpp"
    "${library}" "-Wl,-rpath,${folder}" -o "${SCRATCH_DIR}/shown")

set(gdb "${GDB}" -nx -batch -iex "set debuginfod enabled off"
    -iex "add-auto-load-scripts-directory ${SCRATCH_DIR}/share/gdb/auto-load"
    -iex "add-auto-load-safe-path ${SCRATCH_DIR}" -x "${SOURCES}/check.py" "${SCRATCH_DIR}/shown")
run(${gdb})
run(strip --strip-all "${library}")
run(${gdb})

# What gdb lacks is said in words.
function(expect words)
    run("${GDB}" -nx -batch -iex "set debuginfod enabled off" ${ARGN} "${SCRATCH_DIR}/shown")
    if(NOT output MATCHES "${words}")
        message(FATAL_ERROR "expected \"${words}\":\n${output}")
    endif()
endfunction()
set(load -ex "source ${SOURCES}/../../gdb/printers.py")
expect("= null.*= what it stands for [^\n]* no symbols of libxerces-c\n.*= what it stands for"
    -iex "set auto-solib-add off" -ex "break stop" -ex run -ex up ${load} -ex "print nullElement"
    -ex "print root" -ex "print children" -ex kill)
# Newer releases of gdb end with the result of the last command.
expect("shown as they lie in memory[^\n]*gdb.printing"
    -iex "python __import__('sys').modules['gdb.printing'] = None" ${load} -ex "show version")
