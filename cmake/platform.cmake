# What the project stands on, as imported targets: AOSP's libraries (platform::binder, platform::utils,
# platform::log), libfuse (platform::fuse) and GoogleTest (platform::gtest), for the phone or, where
# ZYL_NATIVE is on, for this machine.
option(ZYL_NATIVE "Build for this machine, with the unit tests, instead of for the phone" OFF)

if(ZYL_NATIVE)
    set(platform ${PROJECT_SOURCE_DIR}/build/platform/native)
    set(system_root "")
else()
    set(platform ${PROJECT_SOURCE_DIR}/build/platform/armhf)
    set(system_root ${CMAKE_SYSROOT})
endif()
if(NOT EXISTS ${platform}/lib/libbinder.so)
    message(FATAL_ERROR "There is no binder platform in ${platform}: run lab/platform/setup first.")
endif()
# The cache's own name, so that another platform is another path to the build.
get_filename_component(platform ${platform} REALPATH)

set(android_headers ${system_root}/usr/include/android)
set(system_libraries ${system_root}/usr/lib/${CMAKE_CXX_LIBRARY_ARCHITECTURE})
if(NOT ZYL_NATIVE)
    # On the phone.
    set(CMAKE_INSTALL_RPATH /system/lib /usr/lib/${CMAKE_CXX_LIBRARY_ARCHITECTURE}/android)
    set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
endif()

find_package(Threads REQUIRED)

# platform_library(NAME FILE HEADERS DEPENDENCIES...): the imported target platform::NAME.
function(platform_library name file headers)
    add_library(platform::${name} UNKNOWN IMPORTED)
    set_target_properties(platform::${name} PROPERTIES IMPORTED_LOCATION ${file})
    target_include_directories(platform::${name} SYSTEM INTERFACE ${headers})
    target_link_libraries(platform::${name} INTERFACE ${ARGN} Threads::Threads)
endfunction()

platform_library(log ${system_libraries}/android/liblog.so ${android_headers})
target_include_directories(platform::log SYSTEM INTERFACE ${platform}/include)
# Android's headers count on what Bionic's bring along, and its libraries on others that lie beside
# them and that nobody else names.
target_compile_options(platform::log INTERFACE
                       "SHELL:-include ${platform}/include/platform/prelude.h")
target_link_options(platform::log INTERFACE -Wl,-rpath-link,${system_libraries}/android)
platform_library(base ${system_libraries}/android/libbase.so ${android_headers} platform::log)
platform_library(cutils ${system_libraries}/android/libcutils.so ${android_headers} platform::log)
platform_library(utils ${system_libraries}/android/libutils.so ${android_headers} platform::log)
platform_library(binder ${platform}/lib/libbinder.so ${platform}/include platform::utils
                 platform::base)
platform_library(fuse ${system_libraries}/libfuse3.so ${system_root}/usr/include/fuse3)
target_compile_definitions(platform::fuse INTERFACE _FILE_OFFSET_BITS=64)

# For whoever asks: the machine's GoogleTest.
find_package(GTest REQUIRED)
add_library(platform::gtest INTERFACE IMPORTED)
target_link_libraries(platform::gtest INTERFACE GTest::gmock GTest::gtest)
