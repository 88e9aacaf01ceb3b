# The number of the libraries' binary interface, and the version in the module's file.

# Grows when a line of Docs/Abi.txt is removed or changed, whatever the version of the project is.
set(ORV_ABI_NUMBER 1)
set_target_properties(OrvPlatform NodeFabric ModuleBroker PROPERTIES SOVERSION ${ORV_ABI_NUMBER}
    VERSION ${ORV_ABI_NUMBER}.${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.${PROJECT_VERSION_PATCH})

if(WIN32)
    orv_add_version_resource(OrvActionManager "${PROJECT_DESCRIPTION}")
else()
    # A note that `readelf -n` shows. Linkers that do not know the option write none.
    include(CheckLinkerFlag)
    check_linker_flag(CXX "-Xlinker;--package-metadata={}" ORV_LINKER_HAS_PACKAGE_METADATA)
    if(ORV_LINKER_HAS_PACKAGE_METADATA)
        target_link_options(OrvActionManager PRIVATE -Xlinker
            "--package-metadata={\"name\":\"OrvActionManager\",\"version\":\"${PROJECT_VERSION}\"}")
    endif()
endif()
