# public_header_use(RESULT NAME FILE): a source that includes the header NAME before anything else and calls each of its
# public functions, which needs whole types and exported functions. Declarations look as clang-format writes them:
# members of a class are indented, other functions are not. Left out: constructors, operators, and functions that take a
# pointer to a function.
function(public_header_use result name file)
    file(READ ${file} text)
    string(REGEX MATCH "\nnamespace ([A-Za-z:]+)\n" namespace "${text}\nnamespace Program\n")
    set(namespace ${CMAKE_MATCH_1})
    string(REPLACE ";" "@" text "${text}") # CMake's lists have their own use for these
    string(REGEX REPLACE "[][]" "" text "${text}")
    string(REPLACE "\n}@" ";" classes "${text}")
    set(calls)
    foreach(class IN LISTS classes)
        string(REGEX REPLACE "\n(private|protected):.*" "" class "${class}")
        string(REGEX MATCH "\n(class|struct) ([A-Z_]+ )?([A-Za-z0-9]+)[^\n]*\n{" head "${class}")
        set(class_name ${CMAKE_MATCH_3})
        string(REGEX MATCHALL "\n(    )?[a-zA-Z_][^\n=(@]*[ *&][A-Za-z0-9_]+\\([^()@]*\\)" functions "${class}")
        foreach(function IN LISTS functions)
            string(REGEX MATCH "^\n(    )?(.*)[ *&]([A-Za-z0-9_]+)\\((.*)\\)$" whole "${function}")
            set(before "${CMAKE_MATCH_2}")
            set(call ${CMAKE_MATCH_3})
            string(REPLACE "," ";" parameters "${CMAKE_MATCH_4}")
            if(before STREQUAL "explicit" OR call STREQUAL "operator")
                continue()
            elseif(before MATCHES "^static ")
                string(PREPEND call "${class_name}::")
            elseif(function MATCHES "^\n ")
                string(PREPEND call "Of<${class_name}>().")
            endif()
            list(TRANSFORM parameters REPLACE " *=.*" "")
            list(TRANSFORM parameters REPLACE "^[ \n]*(.*[^ ]) *[ *&][A-Za-z0-9_]+$" "Of<\\1>()")
            list(JOIN parameters ", " arguments)
            string(APPEND calls "    ${call}(${arguments});\n")
        endforeach()
    endforeach()
    if(NOT calls AND text MATCHES "_EXPORT ")
        message(FATAL_ERROR "No functions were found in ${file}")
    endif()
    string(MAKE_C_IDENTIFIER ${name} id)
    set(${result} "#include <${name}>

extern unsigned char object[];

template<class Type>
static Type& Of()
{
    return reinterpret_cast<Type&>(object);
}

namespace ${namespace}
{
void Use_${id}();
void Use_${id}()
{
${calls}}
}
" PARENT_SCOPE)
endfunction()
