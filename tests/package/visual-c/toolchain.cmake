# Clang by Visual C++'s rules, with its linker, for the processor that is named. Of the C library there is what stands
# here, and library.cmake's.
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES processor)
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${processor})
set(CMAKE_C_COMPILER clang)
set(CMAKE_C_COMPILER_TARGET ${processor}-pc-windows-msvc)
set(CMAKE_C_FLAGS_INIT "-nostdlibinc -isystem ${CMAKE_CURRENT_LIST_DIR}/include")
set(CMAKE_C_STANDARD_LIBRARIES "")
# There is no such library yet as CMake tries the compiler.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
