# What `cpack` makes: Debian packages, one for each component; for Windows one .zip with everything.
set(CPACK_PACKAGE_VENDOR "Quenlor Systems")
# A Debian package names who made it: to distribute one, give `cpack -D CPACK_PACKAGE_CONTACT="Name <address>"`.
set(CPACK_PACKAGE_CONTACT "The developers of ${PROJECT_NAME}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # otherwise it precedes the summary of each component
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

include(cmake/Notices.cmake)

if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_SYSTEM_NAME win64)
    shared_utilities_install_notices(Runtime ${PROJECT_NAME})
else()
    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_DEB_COMPONENT_INSTALL ON)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}) # Quenlor5, of the same package
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
    set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

    get_target_property(so_version SharedUtilitiesNative SOVERSION)
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libsharedutilitiesnative${so_version})
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
    set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Utilities shared by engineering programs: libraries
They tell every program of the family where the installation, the user's
files and the settings are.")
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libsharedutilitiesnative-dev)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
    set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS Runtime)
    set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Utilities shared by engineering programs: development files
Headers, and what CMake and pkg-config need to find the libraries.")
    set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME fraxo-tools)
    set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION admin)
    set(CPACK_COMPONENT_TOOLS_DESCRIPTION "Tools to look into an installation of engineering programs
fraxoinfo prints and explains every location and setting of a machine,
fraxoreg reads and writes its registry.")
    shared_utilities_install_notices(Runtime ${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME})
    shared_utilities_install_notices(Development ${CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME})
    if(SHAREDUTILITIES_BUILD_TOOLS)
        shared_utilities_install_notices(Tools ${CPACK_DEBIAN_TOOLS_PACKAGE_NAME})
    endif()
endif()
include(CPack)
