# Flags and helpers that every target shares.

add_library(vantrel_flags INTERFACE)
target_include_directories(vantrel_flags INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(vantrel_flags INTERFACE -Wall -Wextra -Werror -fno-strict-aliasing
  -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)
target_compile_definitions(vantrel_flags INTERFACE UNICODE _UNICODE VANTREL_VERSION="${PROJECT_VERSION}")
if(WIN32)
  target_compile_definitions(vantrel_flags INTERFACE WINVER=0x0A00 _WIN32_WINNT=0x0A00 __USE_MINGW_ANSI_STDIO=1)
  # The header-only helpers of the native system serve the cross build too, one by one: the rest of its headers
  # belongs to another platform.
  foreach(helper nlohmann CLI stb)
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/helpers)
    file(CREATE_LINK /usr/include/${helper} ${CMAKE_BINARY_DIR}/helpers/${helper} SYMBOLIC)
  endforeach()
  target_include_directories(vantrel_flags SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/helpers)
  # Nothing but system libraries may be needed beside the binaries in the target's folder.
  target_link_options(vantrel_flags INTERFACE -static -static-libgcc -static-libstdc++)
endif()
if(VANTREL_SANITIZE)
  target_compile_options(vantrel_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vantrel_flags INTERFACE -fsanitize=address,undefined)
endif()
if(VANTREL_COVERAGE)
  target_compile_options(vantrel_flags INTERFACE --coverage -O0)
  target_link_options(vantrel_flags INTERFACE --coverage)
endif()
if(VANTREL_FUZZ)
  target_compile_options(vantrel_flags INTERFACE -fsanitize=fuzzer-no-link,address,undefined)
  target_link_options(vantrel_flags INTERFACE -fsanitize=address,undefined)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
    CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE_PROGRAM})
endif()

# vantrel_library(name folder [EXCLUDE files...]): a static library of all sources below the folder. Tests stand
# beside their nouns as X.test.cpp (any platform) and X.desktop.test.cpp (on the simulated desktop); they are no
# part of the library.
function(vantrel_library name folder)
  cmake_parse_arguments(arg "" "" "EXCLUDE" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "\\.test\\.cpp$")
  if(WIN32)
    # The SDK stands in for the simulated one; the desktop model itself serves the live tests.
    list(FILTER sources EXCLUDE REGEX "Platform/Simulated/Sdk/")
  endif()
  foreach(excluded ${arg_EXCLUDE})
    list(REMOVE_ITEM sources ${CMAKE_SOURCE_DIR}/${excluded})
  endforeach()
  if(sources)
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC vantrel_flags)
    if(WIN32)
      # The SDK's headers are most of what a file costs.
      target_precompile_headers(${name} PRIVATE "${CMAKE_SOURCE_DIR}/Platform/Windows.h")
    endif()
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE vantrel_flags)
  endif()
endfunction()

# vantrel_unloadable(name): a library for foreign processes, which leaves nothing of its runtime when it is unloaded.
function(vantrel_unloadable name)
  target_sources(${name} PRIVATE ${CMAKE_SOURCE_DIR}/Platform/ModuleUnload.cpp)
  target_link_options(${name} PRIVATE -Wl,--wrap=pthread_key_create -Wl,--wrap=pthread_key_delete
    -Wl,--wrap=pthread_getspecific -Wl,--wrap=pthread_setspecific)
endfunction()

# vantrel_tests(name folder libraries...): one test program of all tests below the folder.
function(vantrel_tests name folder)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.test.cpp)
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "\\.desktop\\.test\\.cpp$")
  endif()
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${ARGN} test_support GTest::gmock_main)
  if(WIN32)
    # The time goes into the product, which is built as it is; the tests themselves compile twice as fast like this.
    target_compile_options(${name} PRIVATE -O0)
  endif()
  target_precompile_headers(${name} PRIVATE <gmock/gmock.h> <gtest/gtest.h> "${CMAKE_SOURCE_DIR}/Platform/Windows.h")
  target_compile_definitions(${name} PRIVATE VANTREL_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
  include(GoogleTest)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 120 LABELS ${name})
endfunction()
