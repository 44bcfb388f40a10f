include(GoogleTest)

# qx_add_test(NAME SOURCES ... LIBRARIES ...): a program of GoogleTest tests, each of which ctest runs on its own where it can.
function(qx_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  # GCC 12 takes "text" + std::string(...) for overlapping memory (its bug 105651); tests are full of it.
  target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} GTest::gtest_main)
  target_precompile_headers(${name} PRIVATE <gtest/gtest.h> <nlohmann/json.hpp>)
  if(CMAKE_CROSSCOMPILING)
    add_test(NAME ${name} COMMAND ${name}) # To start it for each test alone takes an emulator long.
  else()
    gtest_discover_tests(${name} PROPERTIES TIMEOUT 120)
  endif()
endfunction()
