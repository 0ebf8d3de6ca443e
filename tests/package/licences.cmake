# The package holds its own licence, the list of what others have written, and the texts that go with what is inside.

set(documents ${work}/package/share/doc/pvWapi)

function(expect_text name pattern)
    set(text "")
    if(EXISTS ${documents}/${name})
        file(READ ${documents}/${name} text)
    endif()
    if(NOT text MATCHES "${pattern}")
        message(SEND_ERROR "${documents}/${name} has no \"${pattern}\"")
    endif()
endfunction()

set(expected expat)
expect_text(LICENSE "^MIT License\n\nCopyright .c. 2026 the pvWapi authors\n")
expect_text(licenses/expat.txt "Expat maintainers.*Permission is hereby granted, free of charge")
if(system STREQUAL "Windows")
    list(APPEND expected gcc mingw-w64)
    expect_text(licenses/gcc.txt "[Ee]xception")
    expect_text(licenses/mingw-w64.txt "winpthreads")
endif()
if(program)
    list(APPEND expected cli11 nlohmann-json)
    expect_text(licenses/cli11.txt "University of Cincinnati.*Redistributions in binary form must reproduce")
    expect_text(licenses/nlohmann-json.txt "Niels Lohmann.*Permission is hereby granted, free of charge")
endif()

# No text without a word on what it belongs to, and no word without its text.
list(SORT expected)
file(GLOB shipped RELATIVE ${documents}/licenses ${documents}/licenses/*)
list(TRANSFORM shipped REPLACE "\\.txt$" "")
list(SORT shipped)
if(NOT shipped STREQUAL expected)
    message(SEND_ERROR "the package has the licences of ${shipped}, and not of ${expected}")
endif()
foreach(name IN LISTS expected)
    expect_text(THIRD-PARTY.md "licenses/${name}\\.txt")
endforeach()

# What is built into a file or loaded by it has a line.
foreach(name expat GCC MinGW-w64 CLI11 nlohmann-json Boost libcurl pugixml SQLite libcrypt)
    expect_text(THIRD-PARTY.md "\n[|] ${name}[^|]*[|][^|]*[|][^|]*[|][^|]*[|]\n")
endforeach()
