# 32-bit Windows, with MinGW-w64's GCC in its posix threads flavour, which brings std::thread and its kin along.
#
# What the library and the tests need for that system, Xerces-C and GoogleTest and Boost's headers, lies in one folder that
# scripts/windows-dependencies.sh fills. KELVOBASE_WINDOWS_DEPENDENCIES names another one.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)

set(triple i686-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)

# Numbers must agree to the last bit on every platform: the x87 registers round otherwise.
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")

if(NOT KELVOBASE_WINDOWS_DEPENDENCIES)
    cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH KELVOBASE_WINDOWS_DEPENDENCIES)
    string(APPEND KELVOBASE_WINDOWS_DEPENDENCIES "/build/windows-dependencies/installed")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KELVOBASE_WINDOWS_DEPENDENCIES)

set(CMAKE_FIND_ROOT_PATH "${KELVOBASE_WINDOWS_DEPENDENCIES}" /usr/${triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
