# Libraries that are not ours. None of them is linked into the plug-in.

set(CONFIG_JSON_ROOT /usr/include CACHE PATH "Folder that holds nlohmann/json.hpp")
set(CONFIG_CLI_ROOT /usr/include CACHE PATH "Folder that holds CLI/CLI.hpp")

# Header-only code: the folder is staged in the build tree, so that a cross compiler sees these
# headers and nothing else of the build machine's.
function(config_header_library target root folder)
  if(NOT EXISTS ${root}/${folder})
    message(FATAL_ERROR "${root} holds no ${folder}: install it, or name another folder")
  endif()
  set(staged ${root})
  if(CMAKE_HOST_UNIX)
    set(staged ${PROJECT_BINARY_DIR}/staged/${target})
    file(MAKE_DIRECTORY ${staged})
    file(CREATE_LINK ${root}/${folder} ${staged}/${folder} SYMBOLIC)
  endif()
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${staged})
endfunction()

config_header_library(config_json ${CONFIG_JSON_ROOT} nlohmann)
config_header_library(config_cli ${CONFIG_CLI_ROOT} CLI)

if(CONFIG_TESTS)
  if(CMAKE_CROSSCOMPILING OR MSVC)
    set(CONFIG_GTEST_SOURCE /usr/src/googletest CACHE PATH "Sources of GoogleTest")
    set(INSTALL_GTEST OFF)
    add_subdirectory(${CONFIG_GTEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
  else()
    find_package(GTest REQUIRED)
  endif()
  include(GoogleTest)
endif()
