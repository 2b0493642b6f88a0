# SPDX-License-Identifier: MIT
# What a user gets: headers, library, CMake package, pkg-config file, manual pages, guide, licence.
include(CMakePackageConfigHelpers)

install(TARGETS QRNDOM EXPORT QRNDOMTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime
        NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY include/qrndom DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    COMPONENT development FILES_MATCHING PATTERN "*.h")
install(FILES "${PROJECT_BINARY_DIR}/include/qrndom/export.h"
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qrndom COMPONENT development)
# With the pages that they link to, beside one another as here.
install(FILES LICENSE README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documents)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documents
    FILES_MATCHING PATTERN "*.md" PATTERN "*.svg")

# Installs a manual page, compressed as Debian wants it. Its section is the end of its name.
function(qrndom_install_manual page component)
    get_filename_component(name "${page}" NAME)
    configure_file("${page}" "${CMAKE_CURRENT_BINARY_DIR}/${name}" @ONLY)
    execute_process(COMMAND gzip -9nf "${name}"
        WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}" COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCH "[0-9]$" section "${name}")
    install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${name}.gz"
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT ${component})
endfunction()
qrndom_install_manual(docs/QRNDOM.3 development)

set(QRNDOM_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/QRNDOM)
install(EXPORT QRNDOMTargets NAMESPACE QRNDOM:: DESTINATION ${QRNDOM_CMAKE_DIR}
    COMPONENT development)
configure_package_config_file(cmake/QRNDOMConfig.cmake.in
    "${PROJECT_BINARY_DIR}/QRNDOMConfig.cmake"
    INSTALL_DESTINATION ${QRNDOM_CMAKE_DIR})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/QRNDOMConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/QRNDOMConfig.cmake"
              "${PROJECT_BINARY_DIR}/QRNDOMConfigVersion.cmake"
    DESTINATION ${QRNDOM_CMAKE_DIR} COMPONENT development)

# A static library's consumers link what it is built on themselves.
if(NOT BUILD_SHARED_LIBS)
    set(QRNDOM_PC_LIBS " -lxerces-c -licuuc -lpthread")
endif()
foreach(folder LIBDIR INCLUDEDIR)
    set(QRNDOM_PC_${folder} "${CMAKE_INSTALL_${folder}}")
    if(NOT IS_ABSOLUTE "${QRNDOM_PC_${folder}}")
        string(PREPEND QRNDOM_PC_${folder} "\${prefix}/")
    endif()
endforeach()
set(QRNDOM_PC_PREFIX "@QRNDOM_PC_PREFIX@")
configure_file(cmake/qrndom.pc.in "${PROJECT_BINARY_DIR}/qrndom.pc.in" @ONLY)
# The prefix is known when the library is installed.
install(CODE "
    get_filename_component(QRNDOM_PC_PREFIX \"\${CMAKE_INSTALL_PREFIX}\" ABSOLUTE)
    configure_file(\"${PROJECT_BINARY_DIR}/qrndom.pc.in\" \"${PROJECT_BINARY_DIR}/qrndom.pc\" @ONLY)"
    COMPONENT development)
install(FILES "${PROJECT_BINARY_DIR}/qrndom.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)

# gdb loads this with the library, by the library's full name.
if(BUILD_SHARED_LIBS)
    if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
        set(folder "${CMAKE_INSTALL_LIBDIR}")
    else()
        set(folder "\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}")
    endif()
    install(FILES gdb/printers.py
        DESTINATION "${CMAKE_INSTALL_DATADIR}/gdb/auto-load${folder}"
        RENAME libQRNDOM.so.${PROJECT_VERSION}-gdb.py COMPONENT development)
endif()
