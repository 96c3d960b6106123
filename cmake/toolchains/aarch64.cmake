# 64-bit Arm: Debian's packages g++-aarch64-linux-gnu and qemu-user.
set(machine aarch64)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
