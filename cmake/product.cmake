# TAVKIT.DLL, tavkit.lib and TAVKIT.pdb, for the processor that the toolchain file names.
enable_language(RC)

# Import names carry the bytes of their arguments where the callee takes these off the stack. The
# subsystem's version is that of the oldest system for the processor that takes the image. Stacks are
# walked by tables at 64 bits, which freestanding code is given on demand only.
if(CMAKE_SYSTEM_PROCESSOR STREQUAL AMD64)
  set(import_form imports)
  set(import_machine i386:x86-64)
  set(subsystem windows,5.02)
  set(machine_options -fasynchronous-unwind-tables)
else()
  set(import_form stdcall_imports)
  set(import_machine i386)
  set(subsystem windows,5.01)
  set(machine_options)
endif()

generate_from(tavkit.def UT_EXPORT def FROM ${public_headers})

foreach(module KERNEL32 USER32 ADVAPI32)
  generate_from(${module}.def UT_IMPORT ${import_form} ${module} FROM ${platform_header})
  add_custom_command(
    OUTPUT ${generated}/${module}.lib
    COMMAND llvm-dlltool-19 -k -m ${import_machine} -d ${module}.def -l ${module}.lib
    DEPENDS ${generated}/${module}.def
    WORKING_DIRECTORY ${generated}
    VERBATIM)
  list(APPEND import_libraries ${generated}/${module}.lib)
endforeach()
add_custom_target(link_inputs DEPENDS ${generated}/tavkit.def ${import_libraries})

# Neither a C runtime nor an optimisation level but the one below. The loops that take time are written with
# vectors, and say how far they are to be unrolled; the others are to be small.
set(CMAKE_MSVC_RUNTIME_LIBRARY "")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -fno-vectorize -fno-slp-vectorize -fno-unroll-loops")

add_library(tavkit SHARED ${library_sources} src/frame/version.rc)
add_dependencies(tavkit link_inputs)
set_target_properties(tavkit PROPERTIES PREFIX "" OUTPUT_NAME TAVKIT SUFFIX .DLL
                                        ARCHIVE_OUTPUT_NAME tavkit DEFINE_SYMBOL "" VERSION 1.2
                                        LINK_DEPENDS "${generated}/tavkit.def;${import_libraries}")
target_include_directories(tavkit PRIVATE include platform src)
target_compile_definitions(tavkit PRIVATE TAVKIT_BUILDING TAVKIT_NO_WINDOWS_H)

# What unnamed namespaces hold is named by a hash of the path that the compiler is given, so each source goes
# by its path from the build's folder, which is the same for all.
set(CMAKE_CXX_COMPILE_OBJECT "<CMAKE_CXX_COMPILER> <DEFINES> <INCLUDES> <FLAGS> -o <OBJECT> -c")
foreach(source ${library_sources})
  file(RELATIVE_PATH path ${PROJECT_BINARY_DIR} ${source})
  set_property(SOURCE ${source} APPEND PROPERTY COMPILE_OPTIONS ${path})
endforeach()
file(RELATIVE_PATH to_project ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR})

# Paths below the project's folder are written relative to it, so that any folder gives the same bytes.
target_compile_options(
  tavkit
  PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${warnings};${freestanding};-ffreestanding;${machine_options};-msse2;-g;
          -gcodeview;-gno-codeview-command-line;
          SHELL:-Xclang -cfguard;-mno-incremental-linker-compatible;-ffile-compilation-dir=.;
          -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=;-ffile-prefix-map=${to_project}=>)

# A manifest comes from CMake's own rule for DLLs; the version block is the only resource.
target_link_libraries(tavkit PRIVATE ${import_libraries} -Wl,/manifest:no)
# The linker notes its command line in the symbols, so the .def goes by a path that every folder has.
target_link_options(
  tavkit
  PRIVATE
  -fuse-ld=lld-link-19
  -nostdlib
  "SHELL:-Xlinker /nodefaultlib"
  "SHELL:-Xlinker /entry:DllMain"
  "SHELL:-Xlinker /def:generated/tavkit.def"
  "SHELL:-Xlinker /subsystem:${subsystem}"
  "SHELL:-Xlinker /opt:ref,noicf"
  "SHELL:-Xlinker /guard:cf,nolongjmp"
  "SHELL:-Xlinker /debug"
  "SHELL:-Xlinker /pdbaltpath:%_PDB%"
  "SHELL:-Xlinker /pdbsourcepath:."
  "SHELL:-Xlinker /Brepro"
  "SHELL:-Xlinker /release")

include(cmake/package/package.cmake)
