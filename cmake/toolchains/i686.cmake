# 32-bit x86: Debian's package g++-i686-linux-gnu. Without SSE2: floats are computed in the registers
# of the x87, with more digits than they have in memory. The processor itself runs the programs: under
# qemu-i386 of Debian 12 those with threads, or with blocks that grow to megabytes, do not end.
set(machine i686)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(emulator /usr/i686-linux-gnu/lib/ld-linux.so.2 --library-path /usr/i686-linux-gnu/lib)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
