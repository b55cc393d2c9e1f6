include(GenerateExportHeader)

# shared_utilities_add_library(NAME EXPORT_MACRO M EXPORT_HEADER H EXPORTS S SOURCES ... [PUBLIC ...] [PRIVATE ...])
#
# S is a version script for the linker: visibility alone leaves what templates of other libraries were compiled to.
# Makes the library NAME as BUILD_SHARED_LIBS says, and NAMEStatic for tests and tools, which reach internals that the
# shared form does not export. A PUBLIC library that is itself such a pair is linked in the matching form.
function(shared_utilities_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPORT_MACRO;EXPORT_HEADER;EXPORTS" "SOURCES;PUBLIC;PRIVATE")
    add_library(${name})
    add_library(${name}Static STATIC EXCLUDE_FROM_ALL)
    set(forms ${name} ${name}Static)
    generate_export_header(${name} BASE_NAME ${arg_EXPORT_MACRO} EXPORT_FILE_NAME ${arg_EXPORT_HEADER})

    foreach(target IN LISTS forms)
        add_library(SharedUtilitiesNative::${target} ALIAS ${target})
        target_sources(${target} PRIVATE ${arg_SOURCES})
        target_compile_features(${target} PUBLIC cxx_std_20)
        set_target_properties(${target} PROPERTIES
            CXX_EXTENSIONS OFF
            CXX_VISIBILITY_PRESET hidden
            VISIBILITY_INLINES_HIDDEN ON
            POSITION_INDEPENDENT_CODE ON
            VERSION 22.0.0
            SOVERSION 22)
        target_link_libraries(${target} PRIVATE ${arg_PRIVATE} $<BUILD_INTERFACE:SharedUtilitiesWarnings>)
        foreach(library IN LISTS arg_PUBLIC)
            if(target STREQUAL "${name}Static" AND TARGET ${library}Static)
                target_link_libraries(${target} PUBLIC ${library}Static)
            else()
                target_link_libraries(${target} PUBLIC ${library})
            endif()
        endforeach()
        get_target_property(type ${target} TYPE)
        if(type STREQUAL "STATIC_LIBRARY")
            target_compile_definitions(${target} PUBLIC ${arg_EXPORT_MACRO}_STATIC_DEFINE)
        endif()
    endforeach()
    if(CMAKE_EXECUTABLE_FORMAT STREQUAL "ELF" AND BUILD_SHARED_LIBS)
        target_link_options(${name} PRIVATE -Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/${arg_EXPORTS})
        set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${arg_EXPORTS})
    endif()
    if(MINGW)
        # Import libraries and DLLs under the names that the family's build files use: no "lib" before them.
        set_target_properties(${name} PROPERTIES PREFIX "" IMPORT_PREFIX "")
    endif()
endfunction()
