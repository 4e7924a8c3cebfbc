# velmor_handler(TARGET SOURCE ...): a library of handlers that are written against <velmor/handler.h>: a shared library
# for velmor, on Windows a COM class with its registration (regsvr32). The library needs no other one.
function(velmor_handler name)
    add_library(${name} MODULE ${ARGN})
    target_link_libraries(${name} PRIVATE Velmor::handler)
    set_target_properties(${name} PROPERTIES PREFIX "" CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    if(WIN32)
        set(folder ${CMAKE_CURRENT_FUNCTION_LIST_DIR})
        target_sources(${name} PRIVATE ${folder}/ComHandler.cpp ${folder}/ComHandler.def)
        target_link_libraries(${name} PRIVATE ole32 oleaut32 uuid advapi32 shlwapi)
    endif()
    if(MINGW)
        target_link_options(${name} PRIVATE -static -Wl,--no-insert-timestamp $<$<CONFIG:Release>:-s>)
        if(CMAKE_SIZEOF_VOID_P EQUAL 4)  # the .def file has the names without the decoration of 32 bits
            target_link_options(${name} PRIVATE -Wl,--enable-stdcall-fixup)
        endif()
    endif()
endfunction()
