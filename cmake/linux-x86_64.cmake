# Builds the same programs at 64 bits, which no DLL can be loaded into: for the native builds alone.
set(CMAKE_C_COMPILER clang-19)
set(CMAKE_CXX_COMPILER clang++-19)
