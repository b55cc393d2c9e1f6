# SHAREDUTILITIES_SYSTEM is the folder that holds the sources of the system we build for.
if(WIN32)
    set(SHAREDUTILITIES_SYSTEM windows)
else()
    set(SHAREDUTILITIES_SYSTEM linux)
endif()
