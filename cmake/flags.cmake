# The one place for compile flags. What ships, the client and the example link `zyl::shipped_flags`, the
# lab, the benchmarks and the tests `zyl::flags`.
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_library(zyl_flags INTERFACE)
add_library(zyl::flags ALIAS zyl_flags)
target_compile_options(zyl_flags INTERFACE -Wall -Wextra -Werror)
# Headers are named from the root of the project: "driver/zyl_driver.h".
target_include_directories(zyl_flags INTERFACE ${PROJECT_SOURCE_DIR})
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(zyl_flags INTERFACE -Wthread-safety -Wthread-safety-beta)
endif()

add_library(zyl_shipped_flags INTERFACE)
add_library(zyl::shipped_flags ALIAS zyl_shipped_flags)
target_link_libraries(zyl_shipped_flags INTERFACE zyl::flags)
target_compile_options(zyl_shipped_flags
    INTERFACE -fno-exceptions -fno-rtti -Wconversion -Wold-style-cast -Wshadow)
# What nobody calls is left out, as it is where a phone's own system is built.
target_compile_options(zyl_shipped_flags INTERFACE -ffunction-sections -fdata-sections)
target_link_options(zyl_shipped_flags INTERFACE -Wl,--gc-sections)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # What compilers let older standards use of newer ones.
    target_compile_options(zyl_shipped_flags INTERFACE -Wc++17-extensions -Wc++20-extensions)
endif()

# What the fuzzer looks for new ways through is what ships, not the lab or the tests.
option(ZYL_FUZZ "Build for the fuzzer, which clang++ brings along" OFF)
if(ZYL_FUZZ)
    target_compile_options(zyl_shipped_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
