# SPDX-License-Identifier: Apache-2.0
# What every target of this project has in common.

include(GNUInstallDirs)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

# Everything runs from the build folder as it does once installed.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(PERISCOPE_PLUGIN_FOLDER lookout/plugins)
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

set(PERISCOPE_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize=")

# The warnings, the language and the sanitizers of our own code.
function(periscope_target name)
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_compile_options(${name} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror
    # Results of floating point arithmetic must not depend on the compiler's taste.
    -ffp-contract=off
    # What is read without the lock that guards it, and locks in the wrong order, see
    # zu/thread_annotations.h.
    $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>
    $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety-beta>
    # GCC 12 sees overlaps in std::string (its bug 105329) and unset members in std::variant (its
    # bug 80635) that are not there.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  if(PERISCOPE_SANITIZE)
    target_compile_options(${name} PRIVATE -fsanitize=${PERISCOPE_SANITIZE}
                           -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(${name} PRIVATE -fsanitize=${PERISCOPE_SANITIZE})
  endif()
endfunction()

# periscope_precompile(NAME HEADER..)
# Headers of others, not our own, that many of the target's files include.
function(periscope_precompile name)
  if(PERISCOPE_PRECOMPILE)
    target_precompile_headers(${name} PRIVATE ${ARGN})
    # The same headers make the same file, or else no compiler cache would know it again.
    target_compile_options(${name} PRIVATE
      "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
  endif()
endfunction()

# The optimization of tests: they are compiled far more often than they run. And they look into
# things without their locks, when nobody else is there.
function(periscope_test_flags name)
  target_compile_options(${name} PRIVATE
                         $<$<CXX_COMPILER_ID:Clang>:-Wno-thread-safety>
                         $<$<CXX_COMPILER_ID:Clang>:-Wno-thread-safety-beta>)
  if(PERISCOPE_SANITIZE)
    target_compile_options(${name} PRIVATE -O0)
  else()
    target_compile_options(${name} PRIVATE $<$<CONFIG:Release>:-O1>)
  endif()
endfunction()

# periscope_test(NAME SOURCES a.cpp.. LIBRARIES x.. [LABELS threads ..] [OWN_NETWORK])
# One test program; each of its tests is a test of its own, in a process of its own. OWN_NETWORK: in
# which it is alone and may use every port, see tests/support/own_network.cpp.
function(periscope_test name)
  cmake_parse_arguments(arg "OWN_NETWORK" "" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  periscope_target(${name})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  if(PERISCOPE_SANITIZE)
    target_compile_definitions(${name} PRIVATE PERISCOPE_SANITIZED)
  endif()
  periscope_test_flags(${name})
  if(PERISCOPE_PRECOMPILE)
    target_precompile_headers(${name} REUSE_FROM test-support)
  endif()
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} test-support GTest::gtest)
  set(labels)
  if(arg_LABELS)
    set(labels LABELS "${arg_LABELS}")
  endif()
  if("threads" IN_LIST arg_LABELS)
    add_dependencies(thread-tests ${name})
  endif()
  if(arg_OWN_NETWORK)
    add_dependencies(${name} own-network)
    set_target_properties(${name} PROPERTIES
      CROSSCOMPILING_EMULATOR ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/own-network)
  endif()
  gtest_discover_tests(${name}
    TEST_PREFIX "${name}."
    DISCOVERY_TIMEOUT 60
    PROPERTIES
      TIMEOUT 120
      ${labels})
endfunction()
