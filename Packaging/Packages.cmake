# Documents, and the Debian packages that cpack builds: the runtime, its debug symbols, and the development files.

# The documents of those who run the module, and of those who build against it.
install(FILES Packaging/copyright Docs/Settings.md Docs/Log.md Docs/Guarantees.md
        DESTINATION ${ORV_RUNTIME_DOC_DIR} COMPONENT runtime)
install(FILES Packaging/copyright Docs/ClientGuide.md Docs/Abi.md Docs/Abi.txt Docs/Guarantees.md Docs/Settings.md Docs/Log.md
        DESTINATION ${ORV_DEVELOPMENT_DOC_DIR} COMPONENT development)
install(DIRECTORY Docs/Samples DESTINATION ${ORV_DEVELOPMENT_DOC_DIR} COMPONENT development)

# On Windows one archive holds everything.
if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_NAME OrvActionManager)
    set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
    set(CPACK_PACKAGE_FILE_NAME OrvActionManager-${PROJECT_VERSION}-win64)
    set(CPACK_STRIP_FILES ON)
    include(CPack)
    return()
endif()

# Debian wants these compressed, without a time inside.
find_program(GZIP gzip)
if(GZIP)
    add_custom_command(OUTPUT changelog.gz ActionHost.1.gz
        COMMAND ${GZIP} -9nc ${CMAKE_SOURCE_DIR}/Packaging/changelog > changelog.gz
        COMMAND ${GZIP} -9nc ActionHost.1 > ActionHost.1.gz
        DEPENDS Packaging/changelog ActionHost)
    add_custom_target(CompressedDocuments ALL DEPENDS changelog.gz ActionHost.1.gz)
    install(FILES ${CMAKE_BINARY_DIR}/changelog.gz DESTINATION ${ORV_RUNTIME_DOC_DIR} COMPONENT runtime)
    install(FILES ${CMAKE_BINARY_DIR}/changelog.gz DESTINATION ${ORV_DEVELOPMENT_DOC_DIR} COMPONENT development)
    install(FILES ${CMAKE_BINARY_DIR}/changelog.gz Packaging/copyright DESTINATION ${ORV_DEBUG_DOC_DIR} COMPONENT debug
            EXCLUDE_FROM_ALL)
    install(FILES ${CMAKE_BINARY_DIR}/ActionHost.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT runtime)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orv-action-manager)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "OrvActionManager developers <developers@orv-action-manager.example.org>"
    CACHE STRING "The maintainer of the packages, with an address")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL runtime development debug)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "schedules and commands for data-collection components")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/Packaging/PrepareFiles.cmake)
set(CPACK_ORV_STRIP ${CMAKE_STRIP})
set(CPACK_ORV_OBJCOPY ${CMAKE_OBJCOPY})
set(CPACK_ORV_READELF ${CMAKE_READELF})

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME orv-action-manager)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS tzdata)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
# cpack's own list of shared libraries would include the files of debug symbols.
file(WRITE ${CMAKE_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
file(WRITE ${CMAKE_BINARY_DIR}/shlibs "")
foreach(library OrvPlatform NodeFabric ModuleBroker)
    file(APPEND ${CMAKE_BINARY_DIR}/shlibs "lib${library} ${ORV_ABI_NUMBER} orv-action-manager (>= ${PROJECT_VERSION})\n")
endforeach()
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/triggers ${CMAKE_BINARY_DIR}/shlibs
    ${CMAKE_SOURCE_DIR}/Packaging/Defaults/conffiles ${CMAKE_SOURCE_DIR}/Packaging/Defaults/postrm)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
    "A module that calls the components of a data-collection service on a
schedule or on an operator's command, and the console host ActionHost,
which runs it, previews schedules and shows its log.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME orv-action-manager-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "orv-action-manager (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "What is needed to build a client, a host or a configuration service for
the module OrvActionManager: headers, libraries, files for CMake and
pkg-config, the guide and samples.")
set(CPACK_DEBIAN_DEBUG_PACKAGE_NAME orv-action-manager-dbgsym)
set(CPACK_DEBIAN_DEBUG_PACKAGE_SECTION debug)
set(CPACK_DEBIAN_DEBUG_PACKAGE_DEPENDS "orv-action-manager (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEBUG_DESCRIPTION
    "The debug symbols of the module, the host and the shared libraries. A
debugger finds them by the build ids of the files.")
include(CPack)
