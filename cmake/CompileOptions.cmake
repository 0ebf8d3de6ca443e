# How this project's own code is compiled. Included after the libraries that are built along with it, so that it holds
# for every folder added from here on and for none of theirs.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion)
add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>)
add_compile_options(-ffunction-sections -fdata-sections)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # A unique symbol would keep the library from being unloaded.
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fno-gnu-unique>)
    # GCC 12 finds overlapping copies within its own std::string (its bug 105651).
    add_compile_options(-Wno-restrict)
    if(CMAKE_UNITY_BUILD)
        # What is a source's own is taken for a header's where several are compiled at a time.
        add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-subobject-linkage>)
    endif()
endif()

add_link_options(-Wl,--gc-sections)
if(WIN32)
    # The same sources give the same file.
    add_link_options(-Wl,--no-insert-timestamp)
elseif(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    # The library is whole: a missing piece shows when it is linked, not when a host loads it. (The names of clang's
    # sanitizers stand in the program alone.)
    add_link_options(-Wl,--no-undefined)
endif()
