# Gives the target tavkit::tavkit: the DLL, its import library and its header, wherever the package
# lies.
if(NOT WIN32)
  set(tavkit_FOUND FALSE)
  set(tavkit_NOT_FOUND_MESSAGE "TAVKIT.DLL is for 32-bit Windows, and this build is for ${CMAKE_SYSTEM_NAME}")
  return()
endif()

if(NOT TARGET tavkit::tavkit)
  get_filename_component(tavkit_folder "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
  add_library(tavkit::tavkit SHARED IMPORTED)
  set_target_properties(
    tavkit::tavkit
    PROPERTIES IMPORTED_LOCATION "${tavkit_folder}/bin/TAVKIT.DLL"
               IMPORTED_IMPLIB "${tavkit_folder}/lib/tavkit.lib"
               INTERFACE_INCLUDE_DIRECTORIES "${tavkit_folder}/include")
  unset(tavkit_folder)
endif()
