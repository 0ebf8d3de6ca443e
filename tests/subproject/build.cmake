# Configures, builds and installs `parent`, a project with the library as a part of it; use.cmake runs what was built.
cmake_minimum_required(VERSION 3.25)
cmake_path(SET library NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../..)

file(REMOVE_RECURSE ${work})
set(choices -G ${generator} -D library=${library} -D CMAKE_BUILD_TYPE=Debug -D CMAKE_UNITY_BUILD=ON
    -D CMAKE_C_FLAGS_DEBUG=-O0 -D CMAKE_CXX_FLAGS_DEBUG=-O0
    -D "CMAKE_C_COMPILER_LAUNCHER=${launcher}"
    -D "CMAKE_CXX_COMPILER_LAUNCHER=${launcher}")
if(toolchain)
    list(APPEND choices -D CMAKE_TOOLCHAIN_FILE=${toolchain})
else()
    list(APPEND choices -D CMAKE_CXX_COMPILER=${compiler} -D CMAKE_CXX_FLAGS=${flags} -D CMAKE_C_FLAGS=${flags})
endif()

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Its programs can be built, and installed is its own and nothing else.
function(expect_build way)
    set(build ${work}/${way})
    run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/parent -B ${build} ${choices} -D way=${way} ${ARGN})
    run(${CMAKE_COMMAND} --build ${build})
    run(${CMAKE_COMMAND} --install ${build} --prefix ${build}/installed)
    file(GLOB_RECURSE files RELATIVE ${build}/installed ${build}/installed/*)
    if(NOT files STREQUAL "bin/host${suffix};share/doc/Parent/terms.txt")
        message(SEND_ERROR "${way}: the library is installed along with the parent: ${files}")
    endif()
endfunction()

# Where the parent asks for them: the library is installed along, and what the parent says of itself stays.
function(expect_rules_of_installation way)
    set(build ${work}/${way})
    run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/parent -B ${build} -D PVWAPI_INSTALL=ON)
    run(${CMAKE_COMMAND} --build ${build})
    run(${CMAKE_COMMAND} --install ${build} --prefix ${build}/whole)
    foreach(file bin/host${suffix} include/pvWapi/client/WapiClient.h share/doc/pvWapi/LICENSE)
        if(NOT EXISTS ${build}/whole/${file})
            message(SEND_ERROR "${file} is not installed")
        endif()
    endforeach()
    file(GLOB documents RELATIVE ${build}/whole/share/doc ${build}/whole/share/doc/Parent/*)
    if(NOT documents STREQUAL "Parent/terms.txt")
        message(SEND_ERROR "the library's documents are among the parent's: ${documents}")
    endif()
endfunction()

# What CMake says, its lines joined.
function(configure result)
    execute_process(COMMAND ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/parent -B ${work}/refused ${choices}
        -D way=add_subdirectory ${ARGN} RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE said)
    file(REMOVE_RECURSE ${work}/refused)
    string(REGEX REPLACE "[ \n]+" " " said "${said}")
    set(${result} "status=${status} ${said}" PARENT_SCOPE)
endfunction()

function(expect_refusal reason)
    configure(said ${ARGN})
    if(said MATCHES "^status=0" OR NOT said MATCHES "${reason}")
        message(SEND_ERROR "not refused because ${reason}: ${said}")
    endif()
endfunction()

# install_expat(<name> <option>...): by its own project, into ${work}/<name>. What it finds out of the compiler is found
# out once; an option stays until it is given anew.
function(install_expat name)
    run(${CMAKE_COMMAND} -S ${expat} -B ${work}/expat ${choices} -D CMAKE_INSTALL_PREFIX=${work}/${name}
        -D CMAKE_INSTALL_LIBDIR=lib -D EXPAT_BUILD_DOCS=OFF -D EXPAT_BUILD_EXAMPLES=OFF -D EXPAT_BUILD_TESTS=OFF
        -D EXPAT_BUILD_TOOLS=OFF -D EXPAT_ENABLE_INSTALL=ON ${ARGN})
    run(${CMAKE_COMMAND} --build ${work}/expat --target install)
endfunction()

set(nowhere ${work}/nowhere)
set(no_source -D PVWAPI_EXPAT_SOURCE=${nowhere})

expect_refusal("source is not in ${nowhere}, and no CMake package of expat is found.*scripts/setup.*PVWAPI_EXPAT_SOURCE"
    ${no_source} -D CMAKE_DISABLE_FIND_PACKAGE_expat=ON)

set(old_header ${work}/old/lib/expat.h)
file(WRITE ${old_header} "#define XML_MAJOR_VERSION 2\n#define XML_MINOR_VERSION 7\n#define XML_MICRO_VERSION 9\n")
expect_refusal("expat 2.7.9 is too old: 2.8.3 or later is needed" -D PVWAPI_EXPAT_SOURCE=${work}/old)

install_expat(shared)
expect_refusal("of another build: it is no static library" ${no_source} -D expat_ROOT=${work}/shared)
set(position_independent -D EXPAT_SHARED_LIBS=OFF -D CMAKE_POSITION_INDEPENDENT_CODE=ON)
install_expat(whole ${position_independent})
expect_refusal("of another build: it reads document types" ${no_source} -D expat_ROOT=${work}/whole)
set(small -D EXPAT_CHAR_TYPE=char -D EXPAT_DTD=OFF -D EXPAT_GE=OFF -D EXPAT_CONTEXT_BYTES=OFF)
if(NOT toolchain)
    install_expat(fixed -D EXPAT_SHARED_LIBS=OFF -D CMAKE_POSITION_INDEPENDENT_CODE=OFF ${small})
    expect_refusal("of another build: no shared library can be built" ${no_source} -D expat_ROOT=${work}/fixed)
endif()

install_expat(wanted ${position_independent} ${small})
expect_build(add_subdirectory -D PVWAPI_EXPAT_SOURCE=${expat})
expect_rules_of_installation(add_subdirectory)
expect_build(FetchContent ${no_source} -D expat_ROOT=${work}/wanted)
