# SPDX-License-Identifier: MIT
# Puts the whole library into `target`, with a log of the target's own: into the library itself, and
# into programs that reach its hidden symbols or whose log nobody else may touch. Targets whose logs are
# set alike share the log's object.
#
#     qrndom_whole_library(target LOG_FILE path [LOG_MODE 0 to 3] [LOG_LIMIT bytes])
function(qrndom_whole_library target)
    cmake_parse_arguments(ARG "" "LOG_FILE;LOG_MODE;LOG_LIMIT" "" ${ARGN})
    if(NOT DEFINED ARG_LOG_MODE)
        set(ARG_LOG_MODE 1)
    endif()
    if(NOT DEFINED ARG_LOG_LIMIT)
        set(ARG_LOG_LIMIT ${QRNDOM_LOG_LIMIT})
    endif()
    set(settings QRNDOM_LOG_FILE="${ARG_LOG_FILE}" QRNDOM_LOG_MODE=${ARG_LOG_MODE}
        QRNDOM_LOG_LIMIT=${ARG_LOG_LIMIT})
    string(MD5 log "${settings}")
    string(SUBSTRING "qrndom_log_${log}" 0 19 log)
    if(NOT TARGET ${log})
        add_library(${log} OBJECT "${PROJECT_SOURCE_DIR}/src/core/PelLog.cpp")
        target_compile_definitions(${log} PRIVATE
            $<TARGET_PROPERTY:qrndom_objects,COMPILE_DEFINITIONS> ${settings})
        target_compile_options(${log} PRIVATE $<TARGET_PROPERTY:qrndom_objects,COMPILE_OPTIONS>)
        target_include_directories(${log} PRIVATE "${PROJECT_SOURCE_DIR}/src"
            "${PROJECT_SOURCE_DIR}/include" "${PROJECT_BINARY_DIR}/include")
        target_link_libraries(${log} PRIVATE XercesC::XercesC ICU::uc Threads::Threads
                                             qrndom_settings qrndom_hardening)
        set_target_properties(${log} PROPERTIES POSITION_INDEPENDENT_CODE ON
            CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    endif()
    # The log comes first: it opens before all other objects of the library are made.
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:${log}> $<TARGET_OBJECTS:qrndom_objects>)
    target_compile_definitions(${target} PRIVATE
        $<TARGET_PROPERTY:qrndom_objects,COMPILE_DEFINITIONS> ${settings})
    target_include_directories(${target} PRIVATE
        "${PROJECT_SOURCE_DIR}/include" "${PROJECT_BINARY_DIR}/include")
    target_link_libraries(${target} PRIVATE
        XercesC::XercesC ICU::uc Threads::Threads $<BUILD_INTERFACE:qrndom_settings>)
endfunction()

# What a shared library made so shows of itself.
add_library(qrndom_exports INTERFACE)
if(QRNDOM_USES_LIBCPP)
    set(QRNDOM_ENGINE_TYPES "typeinfo?for?xercesc*; typeinfo?name?for?xercesc*;")
endif()
set(exports "${PROJECT_BINARY_DIR}/exports.map")
configure_file("${PROJECT_SOURCE_DIR}/cmake/exports.map.in" "${exports}" @ONLY)
target_link_options(qrndom_exports INTERFACE
    LINKER:-Bsymbolic-functions "LINKER:--version-script=${exports}")
set_target_properties(qrndom_exports PROPERTIES INTERFACE_LINK_DEPENDS "${exports}")
