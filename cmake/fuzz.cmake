# The fuzz targets, one for each family: its tests' properties under libFuzzer, which is guided by the
# library and the platform layer alone.
target_compile_options(tavkit PRIVATE -fsanitize=fuzzer-no-link)
target_compile_options(operations PRIVATE -fsanitize=fuzzer-no-link)
target_compile_options(loader PRIVATE -fsanitize=fuzzer-no-link)

set(fuzz_options ${warnings} -Wno-conversion -O1 -g1 -fno-sanitize=undefined)
add_library(fuzz_driver STATIC fuzz/target.cpp)
target_link_libraries(fuzz_driver PUBLIC tavkit gtest gmock)
target_include_directories(fuzz_driver PUBLIC tests)
target_compile_options(fuzz_driver PRIVATE ${fuzz_options})
target_precompile_headers(fuzz_driver PRIVATE <gmock/gmock.h> <gtest/gtest.h> <tavkit.h>)

# fuzz_target(<family> <its tests>)
add_custom_target(fuzz_targets)
function(fuzz_target family tests)
  add_executable(fuzz_${family} tests/${tests}_test.cpp)
  target_link_libraries(fuzz_${family} PRIVATE fuzz_driver)
  target_link_options(fuzz_${family} PRIVATE -fsanitize=fuzzer)
  target_compile_options(fuzz_${family} PRIVATE ${fuzz_options})
  target_precompile_headers(fuzz_${family} REUSE_FROM fuzz_driver)
  add_dependencies(fuzz_targets fuzz_${family})
endfunction()

foreach(family strings multiasciiz unc xbuf netresource registry time dialog convert)
  fuzz_target(${family} library/${family})
endforeach()
fuzz_target(module host/module)
fuzz_target(registry_file host/registry)
