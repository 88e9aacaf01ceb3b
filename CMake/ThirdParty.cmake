# The libraries of other makers that the host and the tests use. A cross-build takes the headers from the same packages
# as a build for this system, and compiles what is not only headers from its source.
if(NOT CMAKE_CROSSCOMPILING)
    find_package(CLI11 REQUIRED)
    find_package(nlohmann_json REQUIRED)
    find_package(pugixml REQUIRED)
    return()
endif()

# A folder of their own: the system's other headers must not be found.
set(third_party ${CMAKE_BINARY_DIR}/ThirdParty)
file(MAKE_DIRECTORY ${third_party})
foreach(library CLI nlohmann)
    file(CREATE_LINK /usr/include/${library} ${third_party}/${library} SYMBOLIC)
endforeach()
add_library(CLI11::CLI11 INTERFACE IMPORTED)
add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
target_include_directories(CLI11::CLI11 INTERFACE ${third_party})
target_include_directories(nlohmann_json::nlohmann_json INTERFACE ${third_party})

file(GLOB pugixml_source ${PROJECT_SOURCE_DIR}/build/sources/pugixml-*/src/pugixml.cpp)
if(NOT pugixml_source)
    message(FATAL_ERROR "The source of pugixml is missing: ./test windows gets it")
endif()
get_filename_component(pugixml_directory ${pugixml_source} DIRECTORY)
add_library(pugixml STATIC ${pugixml_source})
target_include_directories(pugixml SYSTEM PUBLIC ${pugixml_directory})
target_compile_options(pugixml PRIVATE -w)
add_library(pugixml::pugixml ALIAS pugixml)
