# What the toolchains for other machines have in common: Debian's cross compiler of a machine, and
# what runs the programs that it makes. The file that includes this one sets
#
#   machine             as in the compiler's name
#   emulator            the command before a program's; by default qemu for the machine
#
# Of the packages of the machine that builds nothing is found but programs, so that no library or
# header of the wrong machine slips in. Two are for every machine, and named one by one:
# libibverbs-dev's headers, and googletest's sources (tests/CMakeLists.txt).
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${machine}-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER ${machine}-linux-gnu-g++)

set(libraries /usr/${machine}-linux-gnu)
set(CMAKE_FIND_ROOT_PATH ${libraries})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
if(NOT emulator)
    set(emulator qemu-${machine} -L ${libraries})
endif()
set(CMAKE_CROSSCOMPILING_EMULATOR ${emulator})

# A folder that holds nothing but the way to the headers: all of /usr/include would give the cross
# compiler the C library of the machine that builds.
set(headers ${CMAKE_BINARY_DIR}/headers_for_every_machine)
file(MAKE_DIRECTORY ${headers})
file(CREATE_LINK /usr/include/infiniband ${headers}/infiniband SYMBOLIC)
set(CMAKE_C_STANDARD_INCLUDE_DIRECTORIES ${headers})
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES ${headers})
