# Windows looks for DLLs next to the program that needs them. So all programs are built into one
# folder, together with the compiler's runtime libraries, which libraries with a C++ interface must
# share with their application.
add_compile_definitions(BOOST_SYSTEM_USE_UTF8) # System error messages, in any language, are UTF-8.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")

foreach(name IN ITEMS libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll)
  find_file(found_${name} "${name}" PATHS ${CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES} NO_DEFAULT_PATH NO_CACHE
    NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  # Stripped: with debugging information, they would be ten times as large.
  file(MAKE_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  execute_process(
    COMMAND "${CMAKE_STRIP}" "${found_${name}}" -o "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}"
    COMMAND_ERROR_IS_FATAL ANY)
  if(QXORVANEDM_INSTALL)
    install(PROGRAMS "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}" DESTINATION "${CMAKE_INSTALL_BINDIR}")
  endif()
endforeach()
