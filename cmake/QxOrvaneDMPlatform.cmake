# The folders with sources for the target system, or for a family of systems that it belongs to; the
# best match first.
if(WIN32)
  set(platforms Windows Portable)
elseif(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  set(platforms Linux Posix Portable)
else()
  set(platforms Posix Portable)
endif()

# qx_platform_sources(VARIABLE FOLDER NAME...): sets VARIABLE to the sources NAME.cpp, each from the
# first platform folder in FOLDER that has it.
function(qx_platform_sources variable folder)
  set(sources "")
  foreach(name IN LISTS ARGN)
    set(source "")
    foreach(platform IN LISTS platforms)
      if(NOT source AND EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/${platform}/${name}.cpp")
        set(source "${folder}/${platform}/${name}.cpp")
      endif()
    endforeach()
    if(NOT source)
      message(FATAL_ERROR "${folder} has no ${name}.cpp for ${CMAKE_SYSTEM_NAME}")
    endif()
    list(APPEND sources "${source}")
  endforeach()
  set(${variable} "${sources}" PARENT_SCOPE)
endfunction()
