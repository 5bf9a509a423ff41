# SPDX-License-Identifier: Apache-2.0
# Builds for Debian's armhf, 32-bit ARM with hardware floating point, from what scripts/sysroot has unpacked. Programs
# that the build or ctest start run under qemu-user. A sysroot of your own is named with
# -DBUTTONDRIVER_SYSROOT=FOLDER.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)

set(BUTTONDRIVER_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../build/sysroot/armhf" CACHE PATH "Root of the machine built for")
get_filename_component(CMAKE_SYSROOT "${BUTTONDRIVER_SYSROOT}" ABSOLUTE)
# CMake reads this file again for each of its trial builds, which do not know the cache.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES BUTTONDRIVER_SYSROOT)
if(NOT IS_DIRECTORY "${CMAKE_SYSROOT}")
  message(FATAL_ERROR "${CMAKE_SYSROOT} is not there: run scripts/sysroot first")
endif()

set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(CMAKE_C_COMPILER ${CMAKE_LIBRARY_ARCHITECTURE}-gcc)
set(CMAKE_CXX_COMPILER ${CMAKE_LIBRARY_ARCHITECTURE}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L "${CMAKE_SYSROOT}")
# Otherwise the compiler tells, for each use of many templates, that it passed them in another way before version 7.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)

# Libraries and headers are the other machine's, programs this one's.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${CMAKE_SYSROOT}")
set(ENV{PKG_CONFIG_LIBDIR}
  "${CMAKE_SYSROOT}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig")

# Where the moc is that runs here. Without the second one Qt takes the moc of the sysroot.
set(QT_HOST_PATH "/usr" CACHE PATH "Prefix of the Qt of this machine")
set(QT_HOST_PATH_CMAKE_DIR "/usr/lib/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/cmake" CACHE PATH
  "CMake files of the Qt of this machine")
