# SPDX-License-Identifier: MIT
# A toolchain file: the newest Clang that is installed, from 14 on. scripts/clang knows it too.
if(NOT CMAKE_CXX_COMPILER)
    foreach(version RANGE 60 14 -1)
        list(APPEND names clang++-${version})
    endforeach()
    find_program(CMAKE_CXX_COMPILER NAMES ${names} clang++ REQUIRED)
endif()
