# What other projects take from this one: the symbols of the shared libraries, the names of the
# targets, and what `cmake --install` puts where. Three components can be installed one by one:
#
#   runtime      the shared libraries
#   development  headers, static libraries, files for CMake and pkg-config, manual pages of functions
#   tool         the command kvt, its manual pages, completions for bash and zsh, syntax for vim
include(GNUInstallDirs)

foreach(library kvt_str kvt_check)
    set(map ${PROJECT_SOURCE_DIR}/cmake/${library}.map)
    target_link_options(${library}_shared PRIVATE "LINKER:--version-script=${map}")
    set_property(TARGET ${library}_shared APPEND PROPERTY LINK_DEPENDS ${map})
endforeach()

# A subproject and an installed package are used by the same names.
set(kvt_libraries kvt_str kvt_str_shared kvt_message_layer kvt_check kvt_check_shared)
foreach(library ${kvt_libraries})
    add_library(kvt_str::${library} ALIAS ${library})
endforeach()

if(NOT KVT_INSTALL)
    return()
endif()

install(TARGETS ${kvt_libraries} EXPORT kvt_str
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime
        NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/kvt DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    COMPONENT development FILES_MATCHING PATTERN "*.h")
if(TARGET kvt)
    install(TARGETS kvt RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
    install(FILES ${PROJECT_SOURCE_DIR}/completions/kvt.bash RENAME kvt
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tool)
    # Debian's zsh looks into site-functions below /usr/local alone.
    set(zsh_folder site-functions)
    if(CMAKE_INSTALL_PREFIX STREQUAL "/usr" AND EXISTS /etc/debian_version)
        set(zsh_folder vendor-completions)
    endif()
    install(FILES ${PROJECT_SOURCE_DIR}/completions/_kvt
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${zsh_folder} COMPONENT tool)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/editors/vim/
        DESTINATION ${CMAKE_INSTALL_DATADIR}/vim/vimfiles COMPONENT tool)
endif()

# --- Manual pages ----------------------------------------------------------------------------------

# Those of the command and of the format belong to the command, those of the functions to the headers.
# Debian wants them compressed.
find_program(KVT_PANDOC pandoc)
if(KVT_PANDOC)
    set(manuals ${PROJECT_BINARY_DIR}/man)
    file(GLOB manual_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/man/*.md)
    set(compress)
    if(KVT_PACKAGES)
        set(compress COMMAND find ${manuals} -type f -exec gzip -9n {} +)
    endif()
    add_custom_command(OUTPUT ${manuals}.built
        COMMAND ${PROJECT_SOURCE_DIR}/scripts/manuals ${PROJECT_BINARY_DIR}
        ${compress}
        COMMAND ${CMAKE_COMMAND} -E touch ${manuals}.built
        DEPENDS ${PROJECT_SOURCE_DIR}/scripts/manuals ${manual_sources}
        COMMENT "Building the manual pages"
        VERBATIM)
    add_custom_target(manuals ALL DEPENDS ${manuals}.built)
    install(DIRECTORY ${manuals}/man3 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT development)
    if(TARGET kvt)
        install(DIRECTORY ${manuals}/man1 ${manuals}/man5 DESTINATION ${CMAKE_INSTALL_MANDIR}
            COMPONENT tool)
    endif()
else()
    message(STATUS "pandoc is missing: no manual pages")
endif()

# --- For CMake -------------------------------------------------------------------------------------

include(CMakePackageConfigHelpers)
set(folder ${CMAKE_INSTALL_LIBDIR}/cmake/kvt_str)
configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/kvt_strConfig.cmake.in
    ${PROJECT_BINARY_DIR}/package/kvt_strConfig.cmake
    INSTALL_DESTINATION ${folder}
    NO_SET_AND_CHECK_MACRO)
# Before 1.0 another minor version may be another interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/kvt_strConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(EXPORT kvt_str NAMESPACE kvt_str:: FILE kvt_strTargets.cmake DESTINATION ${folder}
    COMPONENT development)
install(FILES
    ${PROJECT_BINARY_DIR}/package/kvt_strConfig.cmake
    ${PROJECT_BINARY_DIR}/package/kvt_strConfigVersion.cmake
    DESTINATION ${folder} COMPONENT development)

# --- For pkg-config --------------------------------------------------------------------------------

# An installation that was moved still works where all folders lie below the prefix.
set(pc_prefix ${CMAKE_INSTALL_PREFIX})
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    file(RELATIVE_PATH up "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
    string(REGEX REPLACE "/$" "" up "${up}")
    set(pc_prefix "\${pcfiledir}/${up}")
endif()
foreach(folder LIBDIR INCLUDEDIR)
    set(pc_${folder} "${CMAKE_INSTALL_${folder}}")
    if(NOT IS_ABSOLUTE "${pc_${folder}}")
        set(pc_${folder} "\${prefix}/${pc_${folder}}")
    endif()
endforeach()
foreach(library kvt_str kvt_check kvt_message_layer)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${library}.pc.in
        ${PROJECT_BINARY_DIR}/package/${library}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/package/${library}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()

# --- For scripts/packages --------------------------------------------------------------------------

if(KVT_PACKAGES)
    include(${PROJECT_SOURCE_DIR}/packaging/packages.cmake)
endif()
