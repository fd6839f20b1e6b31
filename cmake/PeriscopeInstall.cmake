# SPDX-License-Identifier: Apache-2.0
# periscope_install_library(NAME PACKAGE)
# Installs a library with the headers of its folder include/, for others to find in the CMake package
# PACKAGE, which packaging/ makes.
function(periscope_install_library name package)
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  install(TARGETS ${name} EXPORT ${package}Targets
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()

# periscope_cmake_package(PACKAGE DEPENDENCY..)
# What find_package(PACKAGE) reads. Its targets are called PACKAGE::..; the dependencies are the
# arguments of find_package() for what the libraries' headers need.
function(periscope_cmake_package package)
  set(folder ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
  set(DEPENDENCIES)
  foreach(dependency ${ARGN})
    string(APPEND DEPENDENCIES "find_dependency(${dependency})\n")
  endforeach()
  set(PACKAGE ${package})
  configure_package_config_file(${PROJECT_SOURCE_DIR}/packaging/Config.cmake.in
                                ${package}Config.cmake INSTALL_DESTINATION ${folder})
  write_basic_package_version_file(${package}ConfigVersion.cmake COMPATIBILITY SameMinorVersion)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${package}Config.cmake
                ${CMAKE_CURRENT_BINARY_DIR}/${package}ConfigVersion.cmake DESTINATION ${folder})
  install(EXPORT ${package}Targets NAMESPACE ${package}:: DESTINATION ${folder})
endfunction()
