include(GenerateExportHeader)

# qx_add_shared_library(NAME FOLDER folder [COMPONENT component] SOURCES ... HEADERS ... PUBLIC libraries...
#   PRIVATE libraries...)
#
# Adds a shared library that exports only the names in Exports.map. Headers are listed and included
# relative to the root of the repository, and installed in the same folder structure; FOLDER is the
# folder of the export header in that structure. COMPONENT is the package component that the library
# belongs to; without one, the library is always part of the package.
function(qx_add_shared_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "FOLDER;COMPONENT" "SOURCES;HEADERS;PUBLIC;PRIVATE")
  string(TOLOWER "${name}" lowerName)
  set(exportHeader "${PROJECT_BINARY_DIR}/include/${arg_FOLDER}/${lowerName}_export.h")
  set(exportMap "${PROJECT_SOURCE_DIR}/cmake/Exports.map")

  add_library(${name} SHARED ${arg_SOURCES})
  add_library(QxOrvaneDM10::${name} ALIAS ${name})
  generate_export_header(${name} EXPORT_FILE_NAME "${exportHeader}")
  target_sources(${name} PUBLIC
    FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${arg_HEADERS}
    FILE_SET generatedHeaders TYPE HEADERS BASE_DIRS "${PROJECT_BINARY_DIR}/include" FILES "${exportHeader}")
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
  if(WIN32)
    set_target_properties(${name} PROPERTIES PREFIX "")
  elseif(APPLE)
    set_target_properties(${name} PROPERTIES
      VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH "@loader_path")
  else()
    # With hidden visibility alone, instantiations of the standard library's templates would still
    # be exported.
    target_link_options(${name} PRIVATE "LINKER:--version-script=${exportMap}")
    set_target_properties(${name} PROPERTIES
      VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINK_DEPENDS "${exportMap}"
      INSTALL_RPATH "$ORIGIN")
  endif()
  if(NOT QXORVANEDM_INSTALL)
    return()
  endif()
  install(TARGETS ${name} EXPORT QxOrvaneDM10${arg_COMPONENT}Targets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT libraries NAMELINK_COMPONENT development
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT libraries
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/QxOrvaneDM10"
    FILE_SET generatedHeaders DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/QxOrvaneDM10")
endfunction()
