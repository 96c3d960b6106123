# 32-bit x86: Debian's packages g++-i686-linux-gnu and qemu-user. Without SSE2: floats are computed
# in the registers of the x87, with more digits than they have in memory.
set(machine i686)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(qemu qemu-i386)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
