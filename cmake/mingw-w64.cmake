# Cross build for 64-bit Windows; programs run through Wine. What is shipped uses the thread model
# "win32", whose runtime keeps nothing when the plug-in is unloaded; GoogleTest needs "posix".
set(CONFIG_MINGW_THREADS win32 CACHE STRING "Thread model of the compiler: win32 or posix")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CONFIG_MINGW_THREADS)

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-${CONFIG_MINGW_THREADS})
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-${CONFIG_MINGW_THREADS})
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run-wine.sh
                                  ${CMAKE_BINARY_DIR}/wine-prefix)
