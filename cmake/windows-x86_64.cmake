# Builds PE32+ images for 64-bit Windows: the 32-bit tools, told the other machine.
include(${CMAKE_CURRENT_LIST_DIR}/windows-i386.cmake)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(CMAKE_C_COMPILER_TARGET x86_64-pc-windows-msvc)
set(CMAKE_CXX_COMPILER_TARGET x86_64-pc-windows-msvc)
