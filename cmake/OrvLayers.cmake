# orv_publish_headers(<target> <INTERFACE|PUBLIC|PRIVATE> <path>...)
#
# Makes the given folders or single headers of the source tree visible to
# <target> (and, for PUBLIC and INTERFACE, to whatever links it) under their
# path from the source root, and nothing else: each path gets a symbolic link
# in <build>/layers/<target>/, and that folder goes on the include path.
function(orv_publish_headers target scope)
  set(layer_root ${CMAKE_BINARY_DIR}/layers/${target})
  foreach(path IN LISTS ARGN)
    if(NOT EXISTS ${PROJECT_SOURCE_DIR}/${path})
      message(FATAL_ERROR "orv_publish_headers(${target}): ${path} does not exist")
    endif()
    get_filename_component(link_parent ${layer_root}/${path} DIRECTORY)
    file(MAKE_DIRECTORY ${link_parent})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${path} ${layer_root}/${path} SYMBOLIC)
  endforeach()
  target_include_directories(${target} ${scope} ${layer_root})
endfunction()
