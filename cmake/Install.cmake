# What `cmake --install` puts where: the components Runtime, Development and Tools.
include(CMakePackageConfigHelpers)

# In our own folder below the common one, because other libraries may have an IniReader.h too.
set(include_dir ${CMAKE_INSTALL_INCLUDEDIR}/SharedUtilitiesNative)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/SharedUtilitiesNative)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(libraries SharedUtilitiesNative Quenlor5)
if(NOT BUILD_SHARED_LIBS)
    list(APPEND libraries Win32Subset)
    if(NOT WIN32)
        list(APPEND libraries Posix)
    endif()
elseif(NOT WIN32)
    set_target_properties(SharedUtilitiesNative PROPERTIES INSTALL_RPATH $ORIGIN) # Quenlor5 is beside it
endif()
install(TARGETS ${libraries} EXPORT SharedUtilitiesNativeTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development
    INCLUDES DESTINATION ${include_dir})

install(DIRECTORY SharedUtilitiesNative/include/ SharedUtilitiesNative/platform/quenlor5/include/
        SharedUtilitiesNative/platform/win32/include/
        ${PROJECT_BINARY_DIR}/SharedUtilitiesNative/include/
        ${PROJECT_BINARY_DIR}/SharedUtilitiesNative/platform/quenlor5/include/
    DESTINATION ${include_dir} COMPONENT Development
    FILES_MATCHING PATTERN "*.h"
    PATTERN Win32.h EXCLUDE) # no public header includes it

install(EXPORT SharedUtilitiesNativeTargets NAMESPACE SharedUtilitiesNative::
    DESTINATION ${package_dir} COMPONENT Development)
configure_package_config_file(cmake/SharedUtilitiesNativeConfig.cmake.in SharedUtilitiesNativeConfig.cmake
    INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
# Until 1.0 a new minor version may break its users.
write_basic_package_version_file(SharedUtilitiesNativeConfigVersion.cmake COMPATIBILITY SameMinorVersion)
file(APPEND ${CMAKE_CURRENT_BINARY_DIR}/SharedUtilitiesNativeConfigVersion.cmake "
if(PACKAGE_FIND_VERSION_MAJOR EQUAL ${SHAREDUTILITIES_RELEASE}) # shown by find_package beside the file
    string(APPEND PACKAGE_VERSION \" (of the package; ${SHAREDUTILITIES_RELEASE} is the product's release)\")
endif()
")
install(FILES
        ${CMAKE_CURRENT_BINARY_DIR}/SharedUtilitiesNativeConfig.cmake
        ${CMAKE_CURRENT_BINARY_DIR}/SharedUtilitiesNativeConfigVersion.cmake
        cmake/VersionResource.cmake cmake/version.$<IF:$<BOOL:${WIN32}>,rc,cpp>.in
    DESTINATION ${package_dir} COMPONENT Development)

# gdb looks for a library's printers below the folder auto-load, under the library's full path.
if(MSVC)
    install(FILES cmake/debuggers/Quenlor.natvis
        DESTINATION ${CMAKE_INSTALL_DATADIR}/SharedUtilitiesNative COMPONENT Development)
    target_link_options(Quenlor5 PRIVATE /NATVIS:${PROJECT_SOURCE_DIR}/cmake/debuggers/Quenlor.natvis
        INTERFACE $<BUILD_INTERFACE:/NATVIS:${PROJECT_SOURCE_DIR}/cmake/debuggers/Quenlor.natvis>
            $<INSTALL_INTERFACE:/NATVIS:$<INSTALL_PREFIX>/${CMAKE_INSTALL_DATADIR}/SharedUtilitiesNative/Quenlor.natvis>)
elseif(BUILD_SHARED_LIBS AND NOT WIN32)
    install(CODE "file(INSTALL \"${PROJECT_SOURCE_DIR}/cmake/debuggers/Quenlor-gdb.py\"
        DESTINATION \"\${CMAKE_INSTALL_PREFIX}/share/gdb/auto-load\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}\"
        RENAME $<TARGET_FILE_NAME:Quenlor5>-gdb.py)" COMPONENT Development)
endif()

# pkg-config does not know targets, so the private libraries of the static form are spelled out.
set(PC_REQUIRES)
set(PC_DEFINITIONS)
set(PC_LIBRARIES -lSharedUtilitiesNative -lQuenlor5)
if(NOT BUILD_SHARED_LIBS)
    set(PC_REQUIRES pugixml)
    set(PC_DEFINITIONS -DSHAREDUTILITIES_STATIC_DEFINE -DQUENLOR_STATIC_DEFINE)
    if(WIN32)
        get_target_property(system_libraries Win32Subset INTERFACE_LINK_LIBRARIES)
        list(TRANSFORM system_libraries PREPEND -l)
        list(APPEND PC_LIBRARIES ${system_libraries})
    else()
        set(PC_LIBRARIES -lSharedUtilitiesNative -lWin32Subset -lQuenlor5 -lPosix)
    endif()
endif()
list(JOIN PC_DEFINITIONS " " PC_DEFINITIONS)
list(JOIN PC_LIBRARIES " " PC_LIBRARIES)
string(REGEX REPLACE "[^/]+" ".." PC_PREFIX ${pkgconfig_dir}) # the way back, so that the tree can be moved
configure_file(cmake/SharedUtilitiesNative.pc.in SharedUtilitiesNative.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/SharedUtilitiesNative.pc
    DESTINATION ${pkgconfig_dir} COMPONENT Development)

if(SHAREDUTILITIES_BUILD_TOOLS)
    install(TARGETS fraxoinfo RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Tools)
    if(NOT WIN32)
        install(TARGETS fraxoreg RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Tools)
        install(FILES ${PROJECT_BINARY_DIR}/tools/fraxoinfo/fraxoinfo.1 ${PROJECT_BINARY_DIR}/tools/fraxoreg/fraxoreg.1
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Tools)
        install(FILES tools/fraxoinfo/fraxoinfo.bash RENAME fraxoinfo
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT Tools)
        install(FILES tools/fraxoreg/fraxoreg.bash RENAME fraxoreg
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT Tools)
    endif()
endif()
