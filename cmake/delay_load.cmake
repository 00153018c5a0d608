# omb_delay_load(target dll...): the target loads these system DLLs on first
# use instead of at its start. Under MSVC the linker does it; with MinGW a
# delay-import library is made from the system's import library at configure
# time and placed before it on the link line.
function(omb_delay_load target)
    if(MSVC)
        foreach(dll IN LISTS ARGN)
            target_link_options(${target} PRIVATE /DELAYLOAD:${dll}.dll)
        endforeach()
        target_link_libraries(${target} PRIVATE delayimp)
        return()
    endif()
    foreach(dll IN LISTS ARGN)
        set(delayed ${CMAKE_BINARY_DIR}/delay/lib${dll}_delay.a)
        if(NOT EXISTS ${delayed})
            find_library(OMB_IMPORT_${dll} NAMES ${dll} REQUIRED)
            execute_process(COMMAND ${CMAKE_NM} ${OMB_IMPORT_${dll}} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
            string(REGEX MATCHALL " I __imp_[A-Za-z0-9_@?$]+" imports "${symbols}")
            list(TRANSFORM imports REPLACE " I __imp_" "")
            list(REMOVE_DUPLICATES imports)
            list(JOIN imports "\n" exports)
            file(WRITE ${CMAKE_BINARY_DIR}/delay/${dll}.def "LIBRARY ${dll}.dll\nEXPORTS\n${exports}\n")
            execute_process(COMMAND ${CMAKE_DLLTOOL} --input-def ${CMAKE_BINARY_DIR}/delay/${dll}.def
                                    --output-delaylib ${delayed} COMMAND_ERROR_IS_FATAL ANY)
        endif()
        target_link_libraries(${target} PRIVATE ${delayed})
    endforeach()
endfunction()
