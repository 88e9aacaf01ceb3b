# The tree of an installation. It may be moved: no file in it contains its path.
#
#     bin/ActionHost
#     lib/                        the platform layer, the stand-ins, the framework
#     lib/OrvActionManager/       the module, with the texts of its codes beside it
#     lib/cmake, lib/pkgconfig    for those who build against it
#     include/OrvActionManager/   the public headers
#     share/                      documents, samples, the man page
include(GNUInstallDirs)

set(ORV_MODULE_DIR ${CMAKE_INSTALL_LIBDIR}/OrvActionManager)
set(ORV_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/OrvActionManager)
set(ORV_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(ORV_RUNTIME_DOC_DIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/orv-action-manager)
set(ORV_DEVELOPMENT_DOC_DIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/orv-action-manager-dev)
set(ORV_DEBUG_DOC_DIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/orv-action-manager-dbgsym)
set(ORV_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/OrvActionManager)

file(RELATIVE_PATH ORV_LIBRARIES_FROM_HOST /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
file(RELATIVE_PATH ORV_MODULE_FROM_HOST /${CMAKE_INSTALL_BINDIR} /${ORV_MODULE_DIR})
file(RELATIVE_PATH ORV_PREFIX_FROM_PKGCONFIG /${ORV_PKGCONFIG_DIR} /)
