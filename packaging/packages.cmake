# Packages of the three components, by CPack (scripts/packages). What Debian wants beside the files of
# `cmake --install` is installed only here.
set(CPACK_PACKAGE_VENDOR "the kvt_str authors")
set(CPACK_PACKAGE_CONTACT "the kvt_str authors <kvt_str@localhost.localdomain>" CACHE STRING
    "Who maintains the packages")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_COMPONENTS_ALL runtime development tool)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_STRIP_FILES ON)
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
# Whoever builds them, folders are readable for all.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})

set(runtime_package libkvt-str${PROJECT_VERSION_MAJOR})
set(development_package libkvt-str-dev)
set(tool_package kvt)
set(runtime_section libs)
set(development_section libdevel)
set(tool_section utils)
set(runtime_summary "text codec for InfiniBand aggregation messages")
set(development_summary "text codec for InfiniBand aggregation messages (development)")
set(tool_summary "check, format, convert and draw texts of aggregation messages")
set(about "kvt_str turns the messages of a job- and resource-management protocol for
InfiniBand fabrics into text that people can read, and reads such text back.")
set(runtime_about "This package has the shared libraries.")
set(development_about "This package has the headers, the static libraries and the files for CMake
and pkg-config.")
set(tool_about "This package has the command kvt for those who write, repair or compare such
texts by hand.")

file(READ ${PROJECT_SOURCE_DIR}/LICENSE licence)
string(REGEX REPLACE "^MIT License\n\nCopyright [^\n]*\n\n" "" licence "${licence}")
string(STRIP "${licence}" licence)
string(REPLACE "\n\n" "\n.\n" licence "${licence}")
string(REPLACE "\n" "\n " licence "${licence}")
configure_file(${PROJECT_SOURCE_DIR}/packaging/copyright.in ${PROJECT_BINARY_DIR}/package/copyright
    @ONLY)

execute_process(COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/CHANGELOG.md
    OUTPUT_FILE ${PROJECT_BINARY_DIR}/package/changelog.gz COMMAND_ERROR_IS_FATAL ANY)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_RPM_COMPONENT_INSTALL ON)
set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
set(CPACK_RPM_PACKAGE_LICENSE MIT)
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
    /usr/share/man /usr/share/man/man1 /usr/lib/x86_64-linux-gnu /usr/lib/x86_64-linux-gnu/cmake
    /usr/lib/x86_64-linux-gnu/pkgconfig)
foreach(component ${CPACK_COMPONENTS_ALL})
    set(package ${${component}_package})
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${${component}_section})
    # The summary is the first line of what CPack takes for Debian.
    set(CPACK_DEBIAN_${upper}_DESCRIPTION
        "${${component}_summary}\n${about}\n.\n${${component}_about}")
    set(CPACK_RPM_${upper}_PACKAGE_NAME ${package})
    set(CPACK_RPM_${upper}_PACKAGE_SUMMARY "${${component}_summary}")
    set(CPACK_RPM_${upper}_PACKAGE_DESCRIPTION "${about}\n\n${${component}_about}")
    install(FILES
        ${PROJECT_BINARY_DIR}/package/copyright ${PROJECT_BINARY_DIR}/package/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
    if(EXISTS ${PROJECT_SOURCE_DIR}/packaging/lintian/${package})
        install(FILES ${PROJECT_SOURCE_DIR}/packaging/lintian/${package}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${component})
    endif()
endforeach()
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# CPack writes no shlibs here that lintian accepts.
set(soname_and_package "${PROJECT_VERSION_MAJOR} ${runtime_package} (>= ${PROJECT_VERSION})\n")
file(WRITE ${PROJECT_BINARY_DIR}/package/shlibs
    "libkvt_str ${soname_and_package}libkvt_check ${soname_and_package}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${PROJECT_BINARY_DIR}/package/shlibs ${PROJECT_SOURCE_DIR}/packaging/triggers)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${runtime_package} (= ${PROJECT_VERSION}), libibverbs-dev")
set(CPACK_RPM_DEVELOPMENT_PACKAGE_REQUIRES
    "${runtime_package} = ${PROJECT_VERSION}, rdma-core-devel")

include(CPack)
