# Run by cpack before it builds the packages from the staged trees, one for each component. Removes the paths by which
# programs and libraries find each other in a tree that may be moved: those of a package are where the loader looks.
# Moves the debug symbols into the tree of the component debug, under the names by which debuggers find them. Adds the
# settings of an installed package, which an installation from source does not have.
function(run)
    execute_process(COMMAND ${ARGV} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    set(output "${output}" PARENT_SCOPE)
endfunction()

set(stage ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
file(GLOB_RECURSE libraries ${stage}/development/*.a)
foreach(file ${libraries})
    run(${CPACK_ORV_STRIP} --strip-debug --remove-section=.comment ${file})
endforeach()

file(GLOB_RECURSE binaries ${stage}/runtime/*/bin/* ${stage}/runtime/*.so*)
foreach(file ${binaries})
    if(IS_SYMLINK ${file})
        continue()
    endif()
    file(RPATH_REMOVE FILE ${file})
    run(${CPACK_ORV_READELF} --notes ${file})
    if(NOT output MATCHES "Build ID: (..)([0-9a-f]+)")
        message(FATAL_ERROR "${file} has no build id")
    endif()
    set(folder ${stage}/debug/usr/lib/debug/.build-id/${CMAKE_MATCH_1})
    set(symbols ${folder}/${CMAKE_MATCH_2}.debug)
    file(MAKE_DIRECTORY ${folder})
    run(${CPACK_ORV_OBJCOPY} --only-keep-debug --compress-debug-sections ${file} ${symbols})
    run(${CPACK_ORV_STRIP} --strip-unneeded --remove-section=.comment ${file})
    file(CHMOD ${symbols} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endforeach()

# The module looks for its settings beside itself, and an administrator in /etc.
set(runtime ${stage}/runtime)
set(defaults ${CMAKE_CURRENT_LIST_DIR}/Defaults)
configure_file(${defaults}/OrvActionManager.ini ${runtime}/etc/orv-action-manager/OrvActionManager.ini COPYONLY)
configure_file(${defaults}/logrotate ${runtime}/etc/logrotate.d/orv-action-manager COPYONLY)
file(MAKE_DIRECTORY ${runtime}/var/log/orv-action-manager)
file(GLOB_RECURSE module ${runtime}/usr/*/OrvActionManager.so)
get_filename_component(beside_module ${module} DIRECTORY)
file(CREATE_LINK /etc/orv-action-manager/OrvActionManager.ini ${beside_module}/OrvActionManager.ini SYMBOLIC)
