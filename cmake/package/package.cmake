# What the package holds of the build for one width of the processor, and of what both share.
include(CMakePackageConfigHelpers)

# For callers: each name as their compiler asks for it, with its ordinal, and an import library by ordinals
# alone.
if(CMAKE_SYSTEM_PROCESSOR STREQUAL AMD64)
  set(folder x64/)
  set(to_include ../)
  set(caller_form def)
else()
  set(folder "")
  set(to_include "")
  set(caller_form stdcall_def)
endif()
set(callers ${PROJECT_BINARY_DIR}/callers)
file(MAKE_DIRECTORY ${callers})
generate_from(../callers/tavkit.def UT_EXPORT ${caller_form} FROM ${public_headers})
add_custom_command(
  OUTPUT ${PROJECT_BINARY_DIR}/tavkit-ordinals.lib ${PROJECT_BINARY_DIR}/tavkit.def
  COMMAND ${CMAKE_COMMAND} -E copy ${callers}/tavkit.def ${PROJECT_BINARY_DIR}/tavkit.def
  COMMAND ${AWK} "/ @[0-9]+$/ {$0 = $0 \" NONAME\"} {print}" tavkit.def > callers/ordinals.def
  COMMAND llvm-dlltool-19 -k -m ${import_machine} -d callers/ordinals.def -l tavkit-ordinals.lib
  DEPENDS ${generated}/../callers/tavkit.def
  WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
  VERBATIM)
add_custom_target(for_callers ALL DEPENDS ${PROJECT_BINARY_DIR}/tavkit-ordinals.lib)
configure_file(cmake/package/tavkit.pc.in ${callers}/tavkit.pc @ONLY)

install(TARGETS tavkit RUNTIME DESTINATION ${folder}bin ARCHIVE DESTINATION ${folder}lib)
install(FILES ${PROJECT_BINARY_DIR}/TAVKIT.pdb DESTINATION ${folder}bin)
install(FILES ${PROJECT_BINARY_DIR}/tavkit-ordinals.lib ${PROJECT_BINARY_DIR}/tavkit.def
        DESTINATION ${folder}lib)
install(FILES ${callers}/tavkit.pc DESTINATION ${folder}lib/pkgconfig)
if(folder)
  return()
endif()

# The change notes and the reference are there once they have been written.
write_basic_package_version_file(${generated}/tavkit-config-version.cmake
                                 COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT)
install(FILES cmake/package/tavkit-config.cmake ${generated}/tavkit-config-version.cmake
        DESTINATION lib/cmake/tavkit)
install(DIRECTORY include DESTINATION .)
install(DIRECTORY examples/consumer/ DESTINATION example)
install(DIRECTORY examples/dialog_window DESTINATION example)
# Those worked examples that need no control of the platform below them.
install(FILES cmake/package/worked/CMakeLists.txt examples/example.h examples/picture.h
        DESTINATION example/worked)
foreach(name list_in_memory lists network_records record_in_memory settings two_ended_buffer unc_names)
  install(FILES examples/${name}.cpp DESTINATION example/worked)
  install(FILES examples/expected/${name}.txt DESTINATION example/worked/expected)
endforeach()
install(FILES docs/package/README.md DESTINATION .)
install(FILES CHANGELOG.md DESTINATION . OPTIONAL)
install(DIRECTORY build/docs/html/ DESTINATION doc OPTIONAL)
