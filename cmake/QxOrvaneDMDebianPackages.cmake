# Makes CPack build three Debian packages of the installed files: the shared libraries, the
# development files and the program.
set(packaging "${PROJECT_SOURCE_DIR}/packaging")
set(release 1)
set(packageVersion "${PROJECT_VERSION}-${release}")
set(CPACK_PACKAGE_NAME qxorvanedm10)
set(CPACK_PACKAGE_CONTACT "QxOrvaneDM10 maintainers <maintainers@orvane.example>")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/debian")
set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL libraries development program)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE "${release}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  "${PROJECT_BINARY_DIR}/Base" "${PROJECT_BINARY_DIR}/Server" "${PROJECT_BINARY_DIR}/HTTPClient")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "client library for the Orvane design data service")
set(service "Orvane is a cloud service that stores design files and their versions.\n")

set(CPACK_DEBIAN_LIBRARIES_PACKAGE_NAME libqxorvanedm10)
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_CONTROL_EXTRA "${packaging}/triggers")
set(CPACK_DEBIAN_LIBRARIES_DEBUGINFO_PACKAGE ON)
set(CPACK_COMPONENT_LIBRARIES_DESCRIPTION
  "${service}This package contains the libraries that applications use to list
its folders, and to fetch and query the full assemblies of file versions.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libqxorvanedm10-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "libqxorvanedm10 (= ${packageVersion}), libboost1.81-dev, libboost-json1.81-dev, libfmt-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "${service}This package contains what is needed to build applications with the
libraries: headers, CMake and pkg-config files, and a library for tests that
need no network.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME orvane)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "libqxorvanedm10 (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PROGRAM_DEBUGINFO_PACKAGE ON)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
  "${service}This package contains a program that lists its folders, and shows
the full assemblies of file versions as tables, as JSON or as an HTML page.")

# qx_install_compressed(SOURCE DESTINATION NAME COMPONENT): installs the file as NAME.gz.
function(qx_install_compressed source destination name component)
  set(compressed "${PROJECT_BINARY_DIR}/generated/${name}.gz")
  file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/generated")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${source}")
  execute_process(COMMAND gzip -9nc "${source}" OUTPUT_FILE "${compressed}" COMMAND_ERROR_IS_FATAL ANY)
  install(FILES "${compressed}" DESTINATION "${destination}" COMPONENT ${component})
endfunction()

configure_file("${packaging}/changelog.in" "${PROJECT_BINARY_DIR}/generated/changelog.Debian" @ONLY)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upperComponent)
  set(package "${CPACK_DEBIAN_${upperComponent}_PACKAGE_NAME}")
  set(documents "share/doc/${package}")
  install(FILES "${packaging}/copyright" DESTINATION "${documents}" COMPONENT ${component})
  qx_install_compressed("${PROJECT_SOURCE_DIR}/CHANGELOG.md" "${documents}" changelog ${component})
  qx_install_compressed("${PROJECT_BINARY_DIR}/generated/changelog.Debian" "${documents}" changelog.Debian ${component})
  install(FILES "${packaging}/lintian-overrides/${package}" DESTINATION share/lintian/overrides COMPONENT ${component})
endforeach()
qx_install_compressed("${packaging}/orvane.1" share/man/man1 orvane.1 program)
install(FILES "${packaging}/orvane.bash-completion" DESTINATION share/bash-completion/completions RENAME orvane
  COMPONENT program)

# CPack does not strip static libraries.
install(CODE "execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-debug --enable-deterministic-archives
  \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/libQxTesting10.a\" COMMAND_ERROR_IS_FATAL ANY)"
  COMPONENT development)

include(CPack)
