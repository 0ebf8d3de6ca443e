# The operations as the golden wire examples name them, for programs that have the library's objects in them.
if(TARGET wire_operations)
    return()
endif()
add_library(wire_operations OBJECT
    ${CMAKE_CURRENT_LIST_DIR}/WireAccess.cpp
    ${CMAKE_CURRENT_LIST_DIR}/WireAccount.cpp
    ${CMAKE_CURRENT_LIST_DIR}/WireMembers.cpp
    ${CMAKE_CURRENT_LIST_DIR}/WireOperations.cpp
    ${CMAKE_CURRENT_LIST_DIR}/WirePipeline.cpp
    ${CMAKE_CURRENT_LIST_DIR}/WireSession.cpp
    ${CMAKE_CURRENT_LIST_DIR}/WireSpaces.cpp
    ${PROJECT_SOURCE_DIR}/tests/support/WireCall.cpp
    ${PROJECT_SOURCE_DIR}/tests/support/WireFile.cpp)
target_compile_definitions(wire_operations PRIVATE PVWAPI_STATIC)
target_compile_features(wire_operations PRIVATE cxx_std_20)
target_include_directories(wire_operations PRIVATE ${PROJECT_SOURCE_DIR})
