# The phone: 32-bit ARM with hardware floating point, against the sysroot of lab/platform/setup.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_CXX_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)

set(CMAKE_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/sysroot)
if(NOT EXISTS ${CMAKE_SYSROOT}/usr)
    message(FATAL_ERROR "There is no ARM sysroot: run lab/platform/setup first.")
endif()
get_filename_component(CMAKE_SYSROOT ${CMAKE_SYSROOT} REALPATH)

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
