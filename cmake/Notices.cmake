# THIRD_PARTY_NOTICES, which is in every package: the licences of what is compiled in, from the machine that builds. A
# library without one fails the build.
set(compiled_in fmt:libfmt-dev spdlog:libspdlog-dev pugixml:libpugixml-dev utfcpp:libutfcpp-dev)
if(SHAREDUTILITIES_BUILD_TOOLS)
    list(APPEND compiled_in cli11:libcli11-dev nlohmann-json:nlohmann-json3-dev)
endif()
if(MINGW)
    list(APPEND compiled_in "C++ runtime of GCC:gcc-mingw-w64-base" "C runtime of mingw-w64:mingw-w64-x86-64-dev")
endif()

set(notices "${PROJECT_NAME} contains the following software, under the terms that follow each name.\n")
foreach(library IN LISTS compiled_in)
    string(REGEX MATCH "^(.*):(.*)$" library ${library})
    set(name ${CMAKE_MATCH_1})
    set(package ${CMAKE_MATCH_2})
    find_file(notice NAMES copyright REQUIRED NO_CACHE NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH
        PATHS /usr/share/doc/${package} ${VCPKG_INSTALLED_DIR}/${VCPKG_TARGET_TRIPLET}/share/${name})
    file(READ ${notice} text)
    string(APPEND notices "\n\n==== ${name} ====\n\n${text}")
    unset(notice)
endforeach()
file(CONFIGURE OUTPUT THIRD_PARTY_NOTICES CONTENT "@notices@" @ONLY)
file(CONFIGURE OUTPUT copyright @ONLY CONTENT "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: ${PROJECT_NAME}

Files: *
Copyright: Quenlor Systems
License: Quenlor-Systems
 All rights reserved by Quenlor Systems. The terms of the libraries of others that
 are compiled in are in THIRD_PARTY_NOTICES, beside this file.
")

# shared_utilities_install_notices(COMPONENT FOLDER): below the folder for documentation.
function(shared_utilities_install_notices component folder)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/THIRD_PARTY_NOTICES ${CMAKE_CURRENT_BINARY_DIR}/copyright
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${folder} COMPONENT ${component})
endfunction()
