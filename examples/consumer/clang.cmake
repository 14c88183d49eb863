# Builds Windows programs with clang on the headers and libraries of MinGW. PROCESSOR says for which width:
# i686, or x86_64.
set(PROCESSOR i686 CACHE STRING "i686 or x86_64")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PROCESSOR)

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${PROCESSOR})
find_program(LLVM_CLANG NAMES clang-19 clang REQUIRED)
find_program(LLVM_WINDRES NAMES llvm-windres-19 llvm-windres REQUIRED)
set(CMAKE_C_COMPILER ${LLVM_CLANG})
set(CMAKE_C_COMPILER_TARGET ${PROCESSOR}-w64-mingw32)
set(CMAKE_RC_COMPILER ${LLVM_WINDRES})
set(CMAKE_RC_FLAGS_INIT --target=${PROCESSOR}-w64-mingw32)
