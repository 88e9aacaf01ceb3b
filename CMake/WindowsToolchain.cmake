# Cross-builds for 64-bit Windows with Debian's compiler. The "win32" flavour is used because its runtime threads are the
# system's: the other flavour's library loses a thread-local slot and handles each time a module that links it is unloaded.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-win32)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(ORV_MESSAGE_COMPILER x86_64-w64-mingw32-windmc)

# Headers and libraries come from the compiler's own folders, except those that ThirdParty.cmake names.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The programs run under the emulator.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run_under_wine)
