# IBM Z, big-endian: Debian's packages g++-s390x-linux-gnu and qemu-user.
set(machine s390x)
set(CMAKE_SYSTEM_PROCESSOR s390x)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
