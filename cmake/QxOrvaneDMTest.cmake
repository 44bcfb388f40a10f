include(GoogleTest)

# qx_add_test(NAME SOURCES ... LIBRARIES ...): adds a GoogleTest program. Unless cross-compiling,
# CTest runs each of its tests on its own.
function(qx_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  # GCC 12 mistakes "text" + std::string(...) for a copy between overlapping memory (its bug
  # 105651); tests use it a lot.
  target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} GTest::gtest_main)
  target_precompile_headers(${name} PRIVATE <gtest/gtest.h> <nlohmann/json.hpp>)
  if(CMAKE_CROSSCOMPILING)
    add_test(NAME ${name} COMMAND ${name}) # Under an emulator, starting a program is slow.
  else()
    gtest_discover_tests(${name} PROPERTIES TIMEOUT 120)
  endif()
endfunction()
