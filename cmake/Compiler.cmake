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
    # GCC 12 sees an overlap in every optimised `"text" + string`, and an overflow in a variant that
    # becomes another one's value.
    target_compile_options(config_warnings INTERFACE -Wno-restrict -Wno-stringop-overflow)
  endif()
endif()

if(MINGW)
  # One file to copy: no program needs a run-time library beside it. Without a time stamp two
  # builds of one source are the same bytes.
  add_link_options(-static -Wl,--no-insert-timestamp)
  # Line tables, with the paths of the source tree, for whoever looks into a crash.
  add_compile_options($<$<CONFIG:Release>:-g1> -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
endif()
if(NOT MSVC)
  add_compile_options($<$<CONFIG:Release>:-ffunction-sections> $<$<CONFIG:Release>:-fdata-sections>)
  set(splits_symbols $<BOOL:$<TARGET_PROPERTY:CONFIG_SPLITS_SYMBOLS>>)
  add_link_options($<$<AND:$<CONFIG:Release>,$<NOT:${splits_symbols}>>:-s>
                   $<$<CONFIG:Release>:-Wl,--gc-sections>)
endif()
set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")

# config_clang_object(VARIABLE NAME): the variable gets the object of platform/windows/NAME.c, which GCC
# cannot compile correctly.
function(config_clang_object variable name)
  set(source ${PROJECT_SOURCE_DIR}/platform/windows/${name}.c)
  set(object ${CMAKE_CURRENT_BINARY_DIR}/${name}.obj)
  add_custom_command(
    OUTPUT ${object}
    COMMAND clang --target=x86_64-w64-mingw32 -fms-extensions -O2 -Wall -Wextra -Werror
            -o ${object} -c ${source}
    DEPENDS ${source}
    VERBATIM)
  set(${variable} ${object} PARENT_SCOPE)
endfunction()

# config_split_symbols(TARGET): for programs that are shipped. The program carries no symbols; for
# debuggers they are in a file beside it, with ".debug" added to its name.
function(config_split_symbols target)
  if(NOT MINGW)
    return()
  endif()
  set_target_properties(${target} PROPERTIES CONFIG_SPLITS_SYMBOLS ON)
  set(program $<TARGET_FILE:${target}>)
  # These tools would put the time of day into the program.
  set(timeless ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0)
  add_custom_command(
    TARGET ${target} POST_BUILD
    COMMAND ${timeless} ${CMAKE_OBJCOPY} --only-keep-debug ${program} ${program}.debug
    COMMAND ${timeless} ${CMAKE_STRIP} ${program}
    VERBATIM)
endfunction()

# config_version_resource(TARGET TYPE FILE DESCRIPTION): what the file properties show of a program for
# Windows; TYPE is VFT_DLL or VFT_APP.
function(config_version_resource target type file description)
  string(REPLACE "." "," numbers ${PROJECT_VERSION})
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource})
endfunction()

# config_precompile(TARGET [HEADER...]): parses the library headers of nearly every source once.
# A source still includes what it uses.
function(config_precompile target)
  target_precompile_headers(${target} PRIVATE <algorithm> <cstdint> <functional> <map> <memory>
    <optional> <string> <string_view> <unordered_map> <utility> <variant> <vector> ${ARGN})
endfunction()
