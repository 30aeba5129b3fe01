# Warnings, and the flags that make programs small, self-contained and reproducible.

add_library(config_warnings INTERFACE)
if(MSVC)
  target_compile_options(config_warnings INTERFACE /W4 /WX)
  add_compile_options(/utf-8 /Zc:__cplusplus)
  add_compile_definitions(_CRT_SECURE_NO_WARNINGS)  # the C library's own functions are portable
else()
  target_compile_options(
    config_warnings
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Wconversion
              -Wsign-conversion
              -Wshadow
              -Wold-style-cast
              -Wnon-virtual-dtor
              -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # GCC 12 sees an overlap in every optimised `"text" + string`.
    target_compile_options(config_warnings INTERFACE -Wno-restrict)
  endif()
endif()

if(MINGW)
  # One file to copy: no program needs a run-time library beside it. Without a time stamp two
  # builds of one source are the same bytes.
  add_link_options(-static -Wl,--no-insert-timestamp)
endif()
if(NOT MSVC)
  add_compile_options($<$<CONFIG:Release>:-ffunction-sections> $<$<CONFIG:Release>:-fdata-sections>)
  add_link_options($<$<CONFIG:Release>:-s> $<$<CONFIG:Release>:-Wl,--gc-sections>)
endif()
set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
