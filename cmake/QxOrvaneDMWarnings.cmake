# Every target of the project is built with these; the presets turn them into errors.
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow)
