# The platform layer on Linux, and what runs on it: natively built tests under sanitizers
# (TAVKIT_NATIVE), or tests and examples that run on the shipped DLL.
option(TAVKIT_NATIVE "link the library's own sources instead of the DLL" OFF)
set(TAVKIT_INSTRUMENTS "" CACHE STRING "what the compiler builds into a native build")
option(TAVKIT_FUZZ "build the fuzz targets, on those sources" OFF)

set(CMAKE_C_FLAGS_RELEASE "-O1 -g")
set(CMAKE_CXX_FLAGS_RELEASE "-O1 -g")
set(CMAKE_POSITION_INDEPENDENT_CODE OFF)
add_compile_options(-fno-omit-frame-pointer)
add_link_options(-no-pie -fuse-ld=lld-19)
add_compile_options(${TAVKIT_INSTRUMENTS})
add_link_options(${TAVKIT_INSTRUMENTS})

generate_from(exports.inc UT_EXPORT entries FROM ${public_headers})
generate_from(imports.inc UT_IMPORT entries FROM ${platform_header})
generate_from(program_imports.inc UT_IMPORT entries
              FROM ${PROJECT_SOURCE_DIR}/platform/loader/program_operations.h)
generate_from(pairs.inc UT_EXPORT pairs FROM ${public_headers})
add_custom_target(tables DEPENDS ${generated}/exports.inc ${generated}/imports.inc
                                 ${generated}/pairs.inc
                                 ${generated}/program_imports.inc)

add_library(tavkit_headers INTERFACE)
target_include_directories(tavkit_headers INTERFACE include platform ${generated})
target_compile_definitions(tavkit_headers INTERFACE TAVKIT_NO_WINDOWS_H)
add_dependencies(tavkit_headers tables)

# Code of the DLL keeps the stack 4-byte aligned only, so what it calls aligns the stack for itself.
function(platform_library name)
  file(GLOB sources CONFIGURE_DEPENDS platform/${name}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/(client|run_program).cpp$")
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC tavkit_headers)
  target_include_directories(${name} PUBLIC platform/${name})
  target_compile_options(${name} PRIVATE ${warnings} -mstackrealign)
  # What most of its sources include, read once for a quick build.
  target_precompile_headers(${name} PRIVATE <algorithm> <functional> <map> <memory> <string> <vector>)
  # Some file systems number their files by more than 32 bits, which a call then has to take.
  target_compile_definitions(${name} PRIVATE _FILE_OFFSET_BITS=64)
endfunction()
platform_library(operations)
platform_library(loader)
add_library(host_platform INTERFACE)
target_link_libraries(host_platform INTERFACE operations loader)

if(TAVKIT_NATIVE)
  add_library(tavkit STATIC ${library_sources})
  target_include_directories(tavkit PRIVATE src)
  target_compile_options(tavkit PRIVATE ${warnings} ${freestanding} -ffreestanding -msse2)
else()
  add_library(tavkit STATIC platform/loader/client.cpp)
  target_compile_options(tavkit PRIVATE ${warnings})
endif()
target_link_libraries(tavkit PUBLIC host_platform)

# Debian ships GoogleTest as source; there is no 32-bit package of it.
set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest googletest EXCLUDE_FROM_ALL SYSTEM)

# Test code is compiled for a quick build. The instruments are for the code under test; in the tests
# themselves only addresses are watched, so that their buffers are.
set(uncounted -fno-profile-instr-generate -fno-coverage-mapping)
set(quick -O0 -g1 -fno-sanitize=undefined ${uncounted})
foreach(target gtest gtest_main gmock)
  target_compile_options(${target} PRIVATE -O0 -g0 -fno-sanitize=all ${uncounted})
endforeach()

file(GLOB library_tests CONFIGURE_DEPENDS tests/library/*.cpp)
add_executable(library_tests ${library_tests} tests/support/main.cpp
                             tests/support/host_layer.cpp)
target_link_libraries(library_tests PRIVATE tavkit gtest gmock)
target_include_directories(library_tests PRIVATE tests)
target_compile_options(library_tests PRIVATE ${warnings} -Wno-conversion ${quick})
target_precompile_headers(library_tests PRIVATE <gmock/gmock.h> <gtest/gtest.h> <tavkit.h>)

if(TAVKIT_NATIVE)
  target_compile_definitions(library_tests PRIVATE TAVKIT_NATIVE)
endif()
if(TAVKIT_NATIVE OR CMAKE_SIZEOF_VOID_P EQUAL 8)
  file(GLOB host_tests CONFIGURE_DEPENDS tests/host/*.cpp tests/contract/*.cpp)

  add_executable(host_tests ${host_tests})
  target_link_libraries(host_tests PRIVATE host_platform gtest gmock gtest_main)
  target_include_directories(host_tests PRIVATE tests)
  target_compile_options(host_tests PRIVATE ${warnings} -Wno-conversion ${quick})
  target_link_options(host_tests PRIVATE -Wl,--wrap=write)
  target_precompile_headers(host_tests REUSE_FROM library_tests)
endif()
if(NOT TAVKIT_NATIVE)
  add_executable(run_program platform/loader/run_program.cpp)
  target_link_libraries(run_program PRIVATE host_platform)
  target_compile_options(run_program PRIVATE ${warnings})

  file(GLOB examples CONFIGURE_DEPENDS examples/*.cpp)
  foreach(source ${examples})
    cmake_path(GET source STEM example)
    add_executable(${example} ${source})
    target_link_libraries(${example} PRIVATE tavkit)
    target_compile_options(${example} PRIVATE ${warnings})
  endforeach()

  # Timing the DLL beside its peers, which are compiled as the product is.
  file(GLOB bench_sources CONFIGURE_DEPENDS bench/*.cpp)
  add_executable(bench EXCLUDE_FROM_ALL ${bench_sources})
  target_compile_options(bench PRIVATE ${warnings} -Wno-conversion -O2 -fomit-frame-pointer)
  target_link_options(bench PRIVATE -Wl,--wrap=lstrlenA,--wrap=lstrcpyA,--wrap=CharNextA
                                    -Wl,--wrap=LocalAlloc,--wrap=LocalFree)
  target_link_libraries(bench PRIVATE host_platform)
endif()

if(TAVKIT_FUZZ)
  include(cmake/fuzz.cmake)
endif()
