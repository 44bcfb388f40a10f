# Every target of the project is built with these; the presets turn them into errors.
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow)

# The places in the source that requests carry are named from the root of the repository, wherever that was.
add_compile_options("-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")

# The thread sanitizer knows nothing of Asio's fences, which blocking operations and servers of one thread do without.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=thread")
  add_compile_definitions(BOOST_ASIO_DISABLE_FENCED_BLOCK)
endif()
