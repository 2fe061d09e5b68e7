# Cross build for 64-bit ARM (arm64) with Debian's multiarch toolchain:
#   scripts/install-deps.sh arm64    (crossbuild-essential-arm64, qtbase5-dev:arm64, qemu-user-static)
#   cmake -S . -B build-arm64 -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/aarch64-linux-gnu.cmake
# scripts/package-arm64.sh does this and builds the package. Qt's arm64 CMake packages live in
# /usr/lib/aarch64-linux-gnu; they name the build machine's moc, uic and rcc (the host tools of
# qtbase5-dev-tools). The project's own build-time generator is an arm64 program: it, and the
# tests CTest runs, go through qemu-user without any binfmt registration.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(LUMAREX_CROSS_TRIPLET aarch64-linux-gnu)

set(CMAKE_C_COMPILER ${LUMAREX_CROSS_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${LUMAREX_CROSS_TRIPLET}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${LUMAREX_CROSS_TRIPLET})

# Libraries and CMake packages of the target only; programs (rsvg-convert, gzip, dpkg tools)
# from the build machine.
set(CMAKE_FIND_ROOT_PATH /usr/${LUMAREX_CROSS_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# The programs link against libc6-arm64-cross (/usr/aarch64-linux-gnu) but run on the multiarch
# libraries (/lib/aarch64-linux-gnu: libc6:arm64 and the arm64 Qt). The dynamic loader must come
# from the same glibc build as the libc.so.6 it loads, as the two share private data: with
# "-L /usr/aarch64-linux-gnu" qemu took libc6-arm64-cross's loader (a different Debian revision
# than libc6:arm64's), and every program hung in the loader when it started its first thread.
# "-L /" (no prefix) gives /lib/ld-linux-aarch64.so.1 of libc6:arm64, as on an arm64 machine.
find_program(LUMAREX_QEMU_AARCH64 qemu-aarch64-static)
if(LUMAREX_QEMU_AARCH64)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${LUMAREX_QEMU_AARCH64} -L /)
endif()
