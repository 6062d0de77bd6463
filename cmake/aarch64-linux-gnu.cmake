# Cross build for AArch64 Linux with Debian's GNU toolchain. Anything built
# here runs on an x86_64 host through qemu-aarch64.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_ASM_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

# The machine our users have: AArch64 without SVE. Tests that need the
# reference SVE implementation name their own command line.
set(ZORVO_QEMU qemu-aarch64 CACHE STRING "qemu user-mode emulator for aarch64")
set(ZORVO_SYSROOT /usr/aarch64-linux-gnu CACHE PATH "aarch64 sysroot for qemu -L")
set(CMAKE_CROSSCOMPILING_EMULATOR ${ZORVO_QEMU} -L ${ZORVO_SYSROOT} -cpu max,sve=off)
