# Every target of the project is built with these; the presets turn them into errors.
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow)

# Makes the source locations that requests carry relative to the root of the repository.
add_compile_options("-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")

# The thread sanitizer does not understand Asio's fences, which blocking operations and
# single-threaded servers do not need.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=thread")
  add_compile_definitions(BOOST_ASIO_DISABLE_FENCED_BLOCK)
endif()
