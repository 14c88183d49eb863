# The library's tests as programs for Windows, built by MinGW on the shipped DLL of its width: one linked with
# the import library by names, where the DLL lies at its preferred address; and one by ordinals, which takes
# that address for itself, so that the DLL is moved.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(release ${PROJECT_SOURCE_DIR}/dist/x64)
  set(preferred 0x180000000)
else()
  set(release ${PROJECT_SOURCE_DIR}/dist)
  set(preferred 0x10000000)
endif()

enable_language(RC)

generate_from(exports.inc UT_EXPORT entries FROM ${public_headers})
generate_from(imports.inc UT_IMPORT entries FROM ${platform_header})
generate_from(pairs.inc UT_EXPORT pairs FROM ${public_headers})
add_custom_target(tables DEPENDS ${generated}/exports.inc ${generated}/imports.inc
                                 ${generated}/pairs.inc)

# The one header of LLVM that the tests include.
file(GLOB provider /usr/lib/llvm-19/lib/clang/19/include/fuzzer/FuzzedDataProvider.h)
file(COPY ${provider} DESTINATION ${generated}/fuzzer)

set(CMAKE_CXX_FLAGS_RELEASE "-O0 -g0")
set(INSTALL_GTEST OFF)
add_compile_definitions(GTEST_HAS_PTHREAD=0 NOMINMAX)
add_subdirectory(/usr/src/googletest googletest EXCLUDE_FROM_ALL SYSTEM)

# windows_tests(<name> <source>...): the tests as objects, for a program or two.
function(windows_tests name)
  add_library(${name} OBJECT ${ARGN})
  add_dependencies(${name} tables)
  target_link_libraries(${name} PUBLIC gtest gmock)
  target_include_directories(${name} PUBLIC platform/windows platform/operations include tests
                                            ${generated})
  target_compile_definitions(${name} PRIVATE TAVKIT_PREFERRED_ADDRESS=${preferred})
  target_compile_options(${name} PRIVATE -Wno-attributes)
endfunction()

# Two files take controls of every answer, which only the platform layer has.
file(GLOB library_tests CONFIGURE_DEPENDS tests/library/*.cpp)
list(FILTER library_tests EXCLUDE REGEX "/(dialog|faults)_test.cpp$")
file(GLOB windows_sources CONFIGURE_DEPENDS platform/windows/*.cpp platform/operations/host.cpp)
windows_tests(library_on_windows ${library_tests} ${windows_sources} tests/support/main.cpp
              tests/support/windows.cpp)
target_precompile_headers(library_on_windows PRIVATE <gmock/gmock.h> <gtest/gtest.h> <tavkit.h>)

function(test_program name library)
  add_executable(${name} platform/windows/strings.rc)
  target_link_libraries(${name} PRIVATE library_on_windows ${release}/lib/${library}.lib)
  target_link_options(${name} PRIVATE -static ${ARGN})
  set_target_properties(${name} PROPERTIES LINK_DEPENDS
                        "${release}/lib/${library}.lib;${release}/bin/TAVKIT.DLL")
  add_custom_command(TARGET ${name} POST_BUILD COMMAND ${CMAKE_COMMAND} -E copy_if_different
                     ${release}/bin/TAVKIT.DLL $<TARGET_FILE_DIR:${name}>)
endfunction()
test_program(by_name tavkit)
test_program(by_ordinal tavkit-ordinals -Wl,--image-base=${preferred})

# What the operations answer, asked of the system itself: no library is in it.
file(GLOB contract_tests CONFIGURE_DEPENDS tests/contract/*.cpp)
windows_tests(contract_on_windows ${contract_tests} ${windows_sources})
add_executable(contract platform/windows/strings.rc)
target_link_libraries(contract PRIVATE contract_on_windows gtest_main)
target_link_options(contract PRIVATE -static)
