# Installs the files into the directories of Places.cmake.
include(CMakePackageConfigHelpers)
include(Packaging/FileVersion.cmake)

set_target_properties(OrvPlatform NodeFabric ModuleBroker PROPERTIES INSTALL_RPATH $ORIGIN)
set_target_properties(OrvActionManager PROPERTIES INSTALL_RPATH $ORIGIN/..)
set_target_properties(ActionHost PROPERTIES INSTALL_RPATH $ORIGIN/${ORV_LIBRARIES_FROM_HOST})

set_target_properties(HarborInterfaces PROPERTIES EXPORT_NAME FrameworkInterfaces)
set_target_properties(OrvInterfaces PROPERTIES EXPORT_NAME Interfaces)
set_target_properties(OrvNeighbours PROPERTIES EXPORT_NAME Neighbours)
set_target_properties(OrvPlatform PROPERTIES EXPORT_NAME Platform)
set_target_properties(HarborCore PROPERTIES EXPORT_NAME Framework)
set_target_properties(OrvActionManager PROPERTIES EXPORT_NAME Module)

install(TARGETS ActionHost COMPONENT runtime)
if(NOT CMAKE_CROSSCOMPILING)
    install(FILES ${CMAKE_BINARY_DIR}/ActionHost.bash DESTINATION share/bash-completion/completions RENAME ActionHost
            COMPONENT runtime)
endif()
install(TARGETS OrvPlatform NodeFabric ModuleBroker EXPORT OrvActionManager
        RUNTIME COMPONENT runtime ARCHIVE COMPONENT development
        LIBRARY COMPONENT runtime NAMELINK_COMPONENT development INCLUDES DESTINATION ${ORV_INCLUDE_DIR})
install(TARGETS OrvActionManager EXPORT OrvActionManager LIBRARY DESTINATION ${ORV_MODULE_DIR} COMPONENT runtime)
install(FILES $<TARGET_FILE_DIR:OrvActionManager>/SharedFaultTexts.dll DESTINATION ${ORV_MODULE_DIR} COMPONENT runtime)
install(TARGETS HarborInterfaces OrvInterfaces OrvNeighbours HarborCore ConfigServer EXPORT OrvActionManager
        ARCHIVE COMPONENT development INCLUDES DESTINATION ${ORV_INCLUDE_DIR})

foreach(room DataCollectionCore HarborCore Platform Neighbours StandIns/NodeFabric StandIns/ModuleBroker StandIns/ConfigServer)
    install(DIRECTORY ${room}/Include/ DESTINATION ${ORV_INCLUDE_DIR} COMPONENT development)
endforeach()

install(EXPORT OrvActionManager NAMESPACE OrvActionManager:: FILE OrvActionManagerTargets.cmake
        DESTINATION ${ORV_CMAKE_DIR} COMPONENT development)
configure_package_config_file(Packaging/OrvActionManagerConfig.cmake.in OrvActionManagerConfig.cmake
                              INSTALL_DESTINATION ${ORV_CMAKE_DIR})
write_basic_package_version_file(OrvActionManagerConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/OrvActionManagerConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/OrvActionManagerConfigVersion.cmake
        DESTINATION ${ORV_CMAKE_DIR} COMPONENT development)
configure_file(Packaging/orv-action-manager.pc.in orv-action-manager.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/orv-action-manager.pc DESTINATION ${ORV_PKGCONFIG_DIR} COMPONENT development)

include(Packaging/Packages.cmake)
