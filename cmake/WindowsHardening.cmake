# What stands between a fault and somebody who makes use of it, in all that is built for Windows and is not a Debug
# build. Included before the libraries that are built along, which have it as well.
#
# GCC and its linker know nothing of control flow guard (and of shadow stacks no more); the rest is here.
set(wanted $<NOT:$<CONFIG:Debug>>)

# The compiler: a return address that was written over is noticed, and so is a copy that is longer than its target.
add_compile_options($<${wanted}:$<$<COMPILE_LANGUAGE:C,CXX>:-fstack-protector-strong>>)
add_compile_definitions($<${wanted}:_FORTIFY_SOURCE=2>)
# What both call: the copies are the compiler's library's, and what they and the guard end in is our own.
add_link_options($<${wanted}:-fstack-protector-strong>)
add_library(pvwapi_stack_guard STATIC ${PROJECT_SOURCE_DIR}/pvutil/win32/StackGuard.c)
# What is shipped has it inside; who links with that needs none of it.
link_libraries($<BUILD_INTERFACE:$<${wanted}:pvwapi_stack_guard>>)

# The loader: no data runs as code, and each file stands at another address on each machine.
set(options --nxcompat --dynamicbase)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    list(APPEND options --high-entropy-va)
else()
    # Exceptions are looked up in tables, so no handler on the stack is ever one of ours.
    list(APPEND options --no-seh)
endif()
list(JOIN options , options)
add_link_options($<${wanted}:LINKER:${options}>)
