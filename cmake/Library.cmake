include(GenerateExportHeader)

# shared_utilities_add_library(NAME EXPORT_MACRO M EXPORT_HEADER H EXPORTS S SOURCES ... INCLUDES ...
#                              [PRIVATE_INCLUDES ...] [PUBLIC ...] [PRIVATE ...])
#
# Makes the library NAME as BUILD_SHARED_LIBS says, and NAMEStatic for tests and tools, which use internals that the
# shared form does not export. A PUBLIC library of the same kind is linked in the matching form. S is a version script:
# hidden visibility does not cover instantiated templates of other libraries.
#
# On Linux both forms hold the same objects. On Windows code that imports from a DLL differs from code that links
# statically, so there each source is compiled for both.
function(shared_utilities_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPORT_MACRO;EXPORT_HEADER;EXPORTS"
        "SOURCES;INCLUDES;PRIVATE_INCLUDES;PUBLIC;PRIVATE")
    add_library(${name})
    add_library(${name}Static STATIC EXCLUDE_FROM_ALL)
    generate_export_header(${name} BASE_NAME ${arg_EXPORT_MACRO}
        EXPORT_FILE_NAME ${CMAKE_CURRENT_BINARY_DIR}/include/${arg_EXPORT_HEADER})
    set(forms ${name} ${name}Static)
    if(WIN32)
        foreach(form IN LISTS forms)
            target_sources(${form} PRIVATE ${arg_SOURCES})
        endforeach()
    else()
        add_library(${name}Objects OBJECT ${arg_SOURCES})
        foreach(form IN LISTS forms)
            target_sources(${form} PRIVATE $<TARGET_OBJECTS:${name}Objects>)
            set_target_properties(${form} PROPERTIES LINKER_LANGUAGE CXX)
        endforeach()
        list(APPEND forms ${name}Objects)
    endif()

    list(TRANSFORM arg_INCLUDES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    foreach(target IN LISTS forms)
        target_compile_features(${target} PUBLIC cxx_std_20)
        set_target_properties(${target} PROPERTIES
            CXX_EXTENSIONS OFF
            CXX_VISIBILITY_PRESET hidden
            VISIBILITY_INLINES_HIDDEN ON
            POSITION_INDEPENDENT_CODE ON)
        target_include_directories(${target}
            PUBLIC "$<BUILD_INTERFACE:${arg_INCLUDES};${CMAKE_CURRENT_BINARY_DIR}/include>"
            PRIVATE ${arg_PRIVATE_INCLUDES})
        target_link_libraries(${target} PRIVATE ${arg_PRIVATE} $<BUILD_INTERFACE:SharedUtilitiesShipped>)
        foreach(library IN LISTS arg_PUBLIC)
            if(target STREQUAL "${name}Static" AND TARGET ${library}Static)
                target_link_libraries(${target} PUBLIC ${library}Static)
            else()
                target_link_libraries(${target} PUBLIC ${library})
            endif()
        endforeach()
    endforeach()

    set_target_properties(${name} PROPERTIES VERSION ${SHAREDUTILITIES_RELEASE}.0.0 SOVERSION ${SHAREDUTILITIES_RELEASE})
    add_library(SharedUtilitiesNative::${name} ALIAS ${name})
    add_library(SharedUtilitiesNative::${name}Static ALIAS ${name}Static)
    target_compile_definitions(${name}Static PUBLIC ${arg_EXPORT_MACRO}_STATIC_DEFINE)
    if(NOT BUILD_SHARED_LIBS)
        target_compile_definitions(${name} PUBLIC ${arg_EXPORT_MACRO}_STATIC_DEFINE)
        if(NOT WIN32)
            target_compile_definitions(${name}Objects PUBLIC ${arg_EXPORT_MACRO}_STATIC_DEFINE)
        endif()
    elseif(CMAKE_EXECUTABLE_FORMAT STREQUAL "ELF")
        target_link_options(${name} PRIVATE -Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/${arg_EXPORTS})
        set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${arg_EXPORTS})
    endif()
    if(MINGW)
        # Import libraries and DLLs under the names that the family's build files use: no "lib" before them.
        set_target_properties(${name} PROPERTIES PREFIX "" IMPORT_PREFIX "")
    endif()
endfunction()
