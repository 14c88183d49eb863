# Gives the target tavkit::tavkit: the DLL, its import library and its header, for the width that the
# compiler builds for, wherever the package lies.
if(NOT WIN32)
  set(tavkit_FOUND FALSE)
  set(tavkit_NOT_FOUND_MESSAGE "TAVKIT.DLL is for Windows, and this build is for ${CMAKE_SYSTEM_NAME}")
  return()
endif()

get_filename_component(tavkit_package "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
set(tavkit_folder "${tavkit_package}")
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(tavkit_folder "${tavkit_package}/x64")
endif()

if(NOT EXISTS "${tavkit_folder}/lib/tavkit.lib")
  set(tavkit_FOUND FALSE)
  set(tavkit_NOT_FOUND_MESSAGE "there is no ${tavkit_folder}/lib/tavkit.lib")
elseif(NOT TARGET tavkit::tavkit)
  add_library(tavkit::tavkit SHARED IMPORTED)
  set_target_properties(
    tavkit::tavkit
    PROPERTIES IMPORTED_LOCATION "${tavkit_folder}/bin/TAVKIT.DLL"
               IMPORTED_IMPLIB "${tavkit_folder}/lib/tavkit.lib"
               INTERFACE_INCLUDE_DIRECTORIES "${tavkit_package}/include")
endif()
unset(tavkit_package)
unset(tavkit_folder)
