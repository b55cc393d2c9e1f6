# The one list of warnings, only for our own targets: it never reaches a consumer.
add_library(SharedUtilitiesWarnings INTERFACE)
if(MSVC)
    # C4251: our exported types hold standard strings; the DLLs and their users share one runtime.
    target_compile_options(SharedUtilitiesWarnings INTERFACE /W4 /utf-8 /wd4251
        $<$<BOOL:${SHAREDUTILITIES_WARNINGS_AS_ERRORS}>:/WX>)
else()
    target_compile_options(SharedUtilitiesWarnings INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wundef -Wmissing-declarations
        $<$<BOOL:${SHAREDUTILITIES_WARNINGS_AS_ERRORS}>:-Werror>)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        # GCC 12 takes any literal + std::string for an overlapping copy.
        target_compile_options(SharedUtilitiesWarnings INTERFACE -Wno-restrict)
    endif()
endif()
