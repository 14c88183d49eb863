# Builds PE32 images for 32-bit Windows with LLVM, without an SDK.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(CMAKE_C_COMPILER clang-19)
set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_C_COMPILER_TARGET i686-pc-windows-msvc)
set(CMAKE_CXX_COMPILER_TARGET i686-pc-windows-msvc)
set(CMAKE_RC_COMPILER llvm-rc-19)
set(CMAKE_EXE_LINKER_FLAGS_INIT -fuse-ld=lld-link-19)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
# No system library: the imports are named one by one.
set(CMAKE_C_STANDARD_LIBRARIES "")
set(CMAKE_CXX_STANDARD_LIBRARIES "")
