# Resources of Windows binaries: version information, and libraries of message texts.
enable_language(RC)

# orv_add_version_resource(<target> <description>): gives a binary the project's version, which its properties show.
function(orv_add_version_resource target description)
    string(REPLACE "." "," ORV_VERSION_NUMBERS ${PROJECT_VERSION})
    set(ORV_DESCRIPTION ${description})
    set(ORV_FILE_NAME $<TARGET_FILE_NAME:${target}>)
    configure_file(${PROJECT_SOURCE_DIR}/CMake/Version.rc.in ${target}.rc.in @ONLY)
    file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc INPUT ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc.in)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
endfunction()

# orv_add_message_library(<name> <text file>): a library that holds only a message table, made from the same text file
# that is the message module on POSIX. All texts are English (0x0409).
function(orv_add_message_library name text_file)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${text_file})
    file(STRINGS ${text_file} lines REGEX "^0x" ENCODING UTF-8)
    set(messages "MessageIdTypedef=DWORD\nSeverityNames=(Failure=0x2:FAILURE)\nFacilityNames=(Interface=0x4:INTERFACE)\nLanguageNames=(English=0x409:${name})\n")
    foreach(line IN LISTS lines)
        if(NOT line MATCHES "^0x8004([0-9A-Fa-f]+)\t[^\t]*\t(.*)$")
            message(FATAL_ERROR "${text_file}: cannot be a message of a Windows library: ${line}")
        endif()
        string(APPEND messages "\nMessageId=0x${CMAKE_MATCH_1}\nSeverity=Failure\nFacility=Interface\nLanguage=English\n${CMAKE_MATCH_2}\n.\n")
    endforeach()
    set(directory ${CMAKE_CURRENT_BINARY_DIR}/${name})
    file(GENERATE OUTPUT ${directory}/${name}.mc CONTENT "${messages}")
    add_custom_command(OUTPUT ${directory}/${name}.rc DEPENDS ${directory}/${name}.mc
        COMMAND ${ORV_MESSAGE_COMPILER} --codepage_in=65001 -h ${directory} -r ${directory} ${directory}/${name}.mc
        WORKING_DIRECTORY ${directory} VERBATIM)
    add_library(${name} MODULE ${directory}/${name}.rc)
    set_target_properties(${name} PROPERTIES PREFIX "" LINKER_LANGUAGE CXX)
    target_link_options(${name} PRIVATE -nostdlib -Wl,--entry=0)
endfunction()
