# SPDX-License-Identifier: Apache-2.0
# What stands under the project: all of it Debian's packages, see scripts/install-dependencies.

find_package(Threads REQUIRED)
find_package(Boost 1.74 REQUIRED)
find_package(spdlog REQUIRED)
find_package(CLI11 REQUIRED)
find_package(hwy REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui OpenGLWidgets Widgets)
# Alone: what finds it for CMake comes with all of Qt's tools and what they stand on.
find_program(LRELEASE lrelease HINTS ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS} REQUIRED)
find_program(LUPDATE lupdate HINTS ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS} REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(zmq REQUIRED IMPORTED_TARGET libzmq)
pkg_check_modules(libav REQUIRED IMPORTED_TARGET libavcodec libavutil)
pkg_check_modules(libavformat REQUIRED IMPORTED_TARGET libavformat)
pkg_check_modules(libcrypt REQUIRED IMPORTED_TARGET libcrypt)
pkg_check_modules(libcurl REQUIRED IMPORTED_TARGET libcurl)
pkg_check_modules(apriltag REQUIRED IMPORTED_TARGET apriltag)
# Its pictures are freed by a second library, of which its own package file is silent.
find_library(APRILTAG_UTILS apriltag-utils REQUIRED)
target_link_libraries(PkgConfig::apriltag INTERFACE ${APRILTAG_UTILS})

# MessagePack's headers; they ask for Boost unless told not to.
find_path(MSGPACK_INCLUDE msgpack.hpp REQUIRED)
add_library(msgpack INTERFACE)
target_include_directories(msgpack SYSTEM INTERFACE ${MSGPACK_INCLUDE})
target_compile_definitions(msgpack INTERFACE MSGPACK_NO_BOOST)

# OpenCV, one target a module: opencv::core, opencv::imgproc, ... Its own CMake files come only with
# a package that drags in every module there is.
find_path(OPENCV_INCLUDE opencv2/core.hpp PATH_SUFFIXES opencv4 REQUIRED)
foreach(module core imgproc imgcodecs videoio objdetect features2d calib3d)
  find_library(OPENCV_${module} opencv_${module} REQUIRED)
  add_library(opencv::${module} UNKNOWN IMPORTED)
  set_target_properties(opencv::${module} PROPERTIES
    IMPORTED_LOCATION ${OPENCV_${module}}
    INTERFACE_INCLUDE_DIRECTORIES ${OPENCV_INCLUDE})
endforeach()
