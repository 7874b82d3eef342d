# Builds for 64-bit Windows on another system, with mingw-w64 and POSIX threads.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# Debian has one compiler for each kind of threads. Systems with only one compiler use the plain name.
set(triple x86_64-w64-mingw32)
find_program(CMAKE_C_COMPILER NAMES ${triple}-gcc-posix ${triple}-gcc REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES ${triple}-g++-posix ${triple}-g++ REQUIRED)
find_program(CMAKE_RC_COMPILER NAMES ${triple}-windres REQUIRED)

# CMake finds programs of this system, but libraries and headers only of Windows.
set(CMAKE_FIND_ROOT_PATH /usr/${triple} ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
