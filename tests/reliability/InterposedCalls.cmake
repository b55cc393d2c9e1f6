# Fails when the stand-in's registry or the file functions make a call that FailingCalls.cpp does not take.
# -DNM= -DOBJECTS= (of the product) -DINTERPOSER= (the library)

cmake_minimum_required(VERSION 3.25)

# Calls that do not concern files, or cannot fail on an open one.
set(harmless "mem.*|str.*|wcs.*|wmem.*|bcmp|pthread_.*|secure_getenv|setenv|unsetenv|time|clock_gettime|gmtime_r|geteuid|newlocale|towupper_l|dlinfo|closedir")

function(symbols result)
    execute_process(COMMAND ${NM} ${ARGN} OUTPUT_VARIABLE lines COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL " [TU] [a-z][a-z0-9_]*" found "${lines}")
    list(TRANSFORM found REPLACE " [TU] " "")
    set(${result} ${found} PARENT_SCOPE)
endfunction()

list(FILTER OBJECTS INCLUDE REGEX "\\.dir/(\\./)?(registry|files/linux)/|/Posix\\.dir/")
symbols(called -u ${OBJECTS})
symbols(interposed -D --defined-only ${INTERPOSER})
list(REMOVE_DUPLICATES called)
list(FILTER called EXCLUDE REGEX "^(${harmless})$")
if(NOT "fsync" IN_LIST called)
    message(FATAL_ERROR "the objects were not read: ${OBJECTS}")
endif()
list(REMOVE_ITEM called ${interposed})
if(called)
    message(FATAL_ERROR "tests/reliability/FailingCalls.cpp cannot make these calls fail: ${called}")
endif()
