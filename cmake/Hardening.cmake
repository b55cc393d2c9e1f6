# For what is shipped: the usual warnings, what OpenSSF's guide for compilers recommends against memory errors, and
# the same bytes in every build folder. Not for tests, which run without optimisation.
option(SHAREDUTILITIES_HARDENED "Harden the libraries and tools; not compatible with sanitizers" ON)

set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
add_library(SharedUtilitiesShipped INTERFACE)
target_link_libraries(SharedUtilitiesShipped INTERFACE SharedUtilitiesWarnings)

if(MSVC)
    target_compile_options(SharedUtilitiesShipped INTERFACE /Brepro)
    target_link_options(SharedUtilitiesShipped INTERFACE /Brepro)
else()
    target_compile_options(SharedUtilitiesShipped INTERFACE
        "$<${optimised}:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.;-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>")
endif()

if(NOT SHAREDUTILITIES_HARDENED)
    return()
elseif(MSVC)
    target_compile_options(SharedUtilitiesShipped INTERFACE /guard:cf)
    target_link_options(SharedUtilitiesShipped INTERFACE /guard:cf /CETCOMPAT)
    return()
endif()

include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-ftrivial-auto-var-init=zero SHAREDUTILITIES_CAN_ZERO)
target_compile_definitions(SharedUtilitiesShipped INTERFACE _GLIBCXX_ASSERTIONS)
target_compile_options(SharedUtilitiesShipped INTERFACE
    -fstack-protector-strong -fno-delete-null-pointer-checks -fno-strict-overflow -fno-strict-aliasing
    "$<${optimised}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>" # does nothing without optimisation but warn
    $<$<BOOL:${SHAREDUTILITIES_CAN_ZERO}>:-ftrivial-auto-var-init=zero>)
if(WIN32)
    target_link_options(SharedUtilitiesShipped INTERFACE
        -fstack-protector-strong -Wl,--dynamicbase,--high-entropy-va,--nxcompat,--no-insert-timestamp)
else()
    target_compile_options(SharedUtilitiesShipped INTERFACE -fstack-clash-protection)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
        target_compile_options(SharedUtilitiesShipped INTERFACE -fcf-protection=full)
    endif()
    target_link_options(SharedUtilitiesShipped INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
endif()
