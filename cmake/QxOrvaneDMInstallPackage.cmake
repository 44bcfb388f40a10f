include(CMakePackageConfigHelpers)

set(packageFolder "${CMAKE_INSTALL_LIBDIR}/cmake/QxOrvaneDM10")

install(EXPORT QxOrvaneDM10Targets NAMESPACE QxOrvaneDM10:: DESTINATION "${packageFolder}")
set(packages QxOrvaneDM10)
if(QXORVANEDM_HTTP_CLIENT)
  install(EXPORT QxOrvaneDM10HTTPClientTargets NAMESPACE QxOrvaneDM10:: DESTINATION "${packageFolder}")
  list(APPEND packages QxHTTPClient10)
endif()
configure_package_config_file(
  "${CMAKE_CURRENT_LIST_DIR}/QxOrvaneDM10Config.cmake.in" "${PROJECT_BINARY_DIR}/QxOrvaneDM10Config.cmake"
  INSTALL_DESTINATION "${packageFolder}")
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/QxOrvaneDM10ConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/QxOrvaneDM10Config.cmake" "${PROJECT_BINARY_DIR}/QxOrvaneDM10ConfigVersion.cmake"
  DESTINATION "${packageFolder}")

# Relative, so that the files stay correct wherever the package is installed or moved.
file(RELATIVE_PATH prefixFromPkgConfig "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
if(TARGET QxTesting10)
  install(EXPORT QxOrvaneDM10TestingTargets NAMESPACE QxOrvaneDM10:: DESTINATION "${packageFolder}")
  list(APPEND packages QxTesting10)
endif()
set(systemLibraries "")
if(WIN32)
  set(systemLibraries " -lws2_32 -lmswsock")
endif()
foreach(package IN LISTS packages)
  configure_file("${CMAKE_CURRENT_LIST_DIR}/${package}.pc.in" "${PROJECT_BINARY_DIR}/${package}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${package}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endforeach()

if(WIN32)
  # The licences of the libraries that are linked in.
  install(DIRECTORY "${windowsPackages}/share/licenses" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_NAME QxOrvaneDM10)
  set(CPACK_PACKAGE_FILE_NAME "QxOrvaneDM10-${PROJECT_VERSION}-windows-x86_64")
  set(CPACK_STRIP_FILES ON)
  include(CPack)
elseif(QXORVANEDM_DEBIAN_PACKAGES)
  include(QxOrvaneDMDebianPackages)
endif()
