# Cross-compiles for Windows with Debian's MinGW-w64. Packages for Windows are searched for in
# build/windows-packages, where scripts/windows.sh installs them, and in the folders of
# CMAKE_FIND_ROOT_PATH.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triple x86_64-w64-mingw32)
# The variant with winpthreads: with the other one, the standard library has no threads.
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR wine)

get_filename_component(windowsPackages "${CMAKE_CURRENT_LIST_DIR}/../build/windows-packages" ABSOLUTE)
list(APPEND CMAKE_FIND_ROOT_PATH "${windowsPackages}" "/usr/${triple}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Linked statically, so that there are fewer DLLs to ship.
set(ZLIB_USE_STATIC_LIBS ON)
set(OPENSSL_USE_STATIC_LIBS ON)
