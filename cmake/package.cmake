# SPDX-License-Identifier: MIT
# Debian packages by `cpack`: the library, what one needs to build against it, the tool, and the
# documentation. scripts/package calls this.
set(runtime libqrndom${PROJECT_VERSION_MAJOR})
set(development libqrndom-dev)
set(tools qrndom-tools)
set(documentation qrndom-doc)
set(revision 1)
set(QRNDOM_PACKAGE_CONTACT "" CACHE STRING
    "Name and address of those who answer for the packages; a neutral one if not given")
set(QRNDOM_PACKAGE_HOMEPAGE "" CACHE STRING "Address of the project's page, for the packages")
set(QRNDOM_PACKAGE_VCS_GIT "" CACHE STRING "Address to clone the sources from, for the packages")
set(QRNDOM_PACKAGE_VCS_BROWSER "" CACHE STRING "Address to browse the sources at, for the packages")
set(QRNDOM_REFERENCE "" CACHE PATH "The HTML pages that scripts/docs made; packaged if given")

set(CPACK_GENERATOR DEB)
set(components runtime development tools)
if(QRNDOM_REFERENCE)
    list(APPEND components documentation)
endif()
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_PACKAGE_CONTACT "QRNDOM maintainers <qrndom@packages.example>")
if(QRNDOM_PACKAGE_CONTACT)
    set(CPACK_PACKAGE_CONTACT "${QRNDOM_PACKAGE_CONTACT}")
endif()
if(QRNDOM_PACKAGE_HOMEPAGE)
    set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${QRNDOM_PACKAGE_HOMEPAGE}")
endif()
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE qrndom)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${revision})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# Fields that cpack does not know follow one that it does. Packages of several architectures lie
# beside one another, or serve programs of any.
set(common "")
foreach(field VCS_GIT VCS_BROWSER)
    if(QRNDOM_PACKAGE_${field})
        string(REPLACE "VCS_GIT" "Vcs-Git" name "${field}")
        string(REPLACE "VCS_BROWSER" "Vcs-Browser" name "${name}")
        string(APPEND common "\n${name}: ${QRNDOM_PACKAGE_${field}}")
    endif()
endforeach()
foreach(component IN ITEMS RUNTIME DEVELOPMENT)
    set(CPACK_DEBIAN_${component}_PACKAGE_PRIORITY "optional\nMulti-Arch: same${common}")
endforeach()
foreach(component IN ITEMS TOOLS DOCUMENTATION)
    set(CPACK_DEBIAN_${component}_PACKAGE_PRIORITY "optional\nMulti-Arch: foreign${common}")
endforeach()

# Each description brings its own first line.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(about "QRNDOM reads, queries, changes and writes XML documents through small
value-like handles. The XML engine behind them, Xerces-C++, never shows.")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "C++ library for XML documents\n${about}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# Trees are built through the engine's own classes, which the next release may lay out otherwise.
string(REGEX MATCH "^([0-9]+\\.[0-9]+)\\.([0-9]+)$" known "${XercesC_VERSION}")
set(series ${CMAKE_MATCH_1})
math(EXPR next "${CMAKE_MATCH_2} + 1")
execute_process(COMMAND dpkg-query --search "*/libxerces-c-${series}.so"
    OUTPUT_VARIABLE engine ERROR_QUIET)
if(engine MATCHES "^([^:]+):")
    set(engine "${CMAKE_MATCH_1} (>= ${XercesC_VERSION}), ${CMAKE_MATCH_1} (<< ${series}.${next}~)")
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "${engine}")
endif()
# Strips the library and packages what debuggers want apart.
set(CPACK_DEBIAN_RUNTIME_DEBUGINFO_PACKAGE ON)
# Programs built against one release want that release or a later one of the same SONAME.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

# No dependency on the engine's own files: no header and no link of a user's program needs them.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${development})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "C++ library for XML documents (development files)\n${about}
\nThis package has the headers, the CMake package and the pkg-config file.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime} (= ${PROJECT_VERSION}-${revision})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS ${documentation})

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME ${tools})
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION text)
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "checks, asks and edits XML files at the shell\n${about}
\nThis package has qrndom-check, which says what is wrong with a file, asks
it with XPath or indents it, and qrndom-edit, which changes values in it and
nothing else.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${runtime} (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}")
set(CPACK_DEBIAN_TOOLS_DEBUGINFO_PACKAGE ON)

set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME ${documentation})
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DOCUMENTATION_DESCRIPTION
    "C++ library for XML documents (guide and reference)\n${about}
\nThis package has the guide and the reference of all classes as HTML pages.")
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SHLIBDEPS OFF)

file(WRITE "${PROJECT_BINARY_DIR}/debian/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/debian/triggers")

# Debian wants these names, so they are left out of an installation that is not a package.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE "${PROJECT_BINARY_DIR}/debian/changelog.Debian"
"qrndom (${PROJECT_VERSION}-${revision}) unstable; urgency=medium

  * Packaged by scripts/package; changelog.gz has the changes.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
configure_file(CHANGELOG.md "${PROJECT_BINARY_DIR}/debian/changelog" COPYONLY)
execute_process(COMMAND gzip -9nf changelog changelog.Debian
    WORKING_DIRECTORY "${PROJECT_BINARY_DIR}/debian" COMMAND_ERROR_IS_FATAL ANY)
foreach(component IN LISTS components)
    set(folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/${${component}})
    install(FILES LICENSE DESTINATION ${folder} RENAME copyright COMPONENT ${component}
        EXCLUDE_FROM_ALL)
    install(FILES "${PROJECT_BINARY_DIR}/debian/changelog.gz"
                  "${PROJECT_BINARY_DIR}/debian/changelog.Debian.gz"
        DESTINATION ${folder} COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()
install(DIRECTORY examples/
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${development}/examples
    COMPONENT development EXCLUDE_FROM_ALL
    FILES_MATCHING PATTERN "*.cpp" PATTERN "*.h" PATTERN "*.xml")
if(QRNDOM_REFERENCE)
    set(folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/${documentation}/html)
    install(DIRECTORY "${QRNDOM_REFERENCE}/" DESTINATION ${folder} COMPONENT documentation
        EXCLUDE_FROM_ALL)
    # By this Debian's list of documents knows it.
    file(WRITE "${PROJECT_BINARY_DIR}/debian/doc-base" "Document: qrndom
Title: QRNDOM: guide and reference
Author: ${CPACK_PACKAGE_CONTACT}
Abstract: How to read, query, change and write XML documents with QRNDOM,
 a library for C++, and what each of its classes does.
Section: Programming/C++

Format: HTML
Index: ${CMAKE_INSTALL_PREFIX}/${folder}/index.html
Files: ${CMAKE_INSTALL_PREFIX}/${folder}/*.html
")
    install(FILES "${PROJECT_BINARY_DIR}/debian/doc-base"
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc-base RENAME ${documentation}.qrndom
        COMPONENT documentation EXCLUDE_FROM_ALL)
endif()

include(CPack)
