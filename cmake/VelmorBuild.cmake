# The options of every target, and functions that make targets.

add_library(velmor_options INTERFACE)
target_compile_options(velmor_options INTERFACE
    -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual -Wimplicit-fallthrough
    $<IF:$<BOOL:${CMAKE_UNITY_BUILD}>,-Wno-subobject-linkage,-Wshadow>)  # files of one unit see each other's names
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 warns of overlap in the library's own code for u"x" + std::u16string (its bug 105651).
    target_compile_options(velmor_options INTERFACE -Wno-restrict)
endif()
if(VELMOR_WERROR)
    target_compile_options(velmor_options INTERFACE -Werror)
endif()
if(VELMOR_SANITIZE)
    target_compile_options(velmor_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(velmor_options INTERFACE -fsanitize=address,undefined)
endif()
if(VELMOR_SANITIZE_THREADS)
    target_compile_options(velmor_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(velmor_options INTERFACE -fsanitize=thread)
endif()
if(VELMOR_LIBFUZZER)
    # Every room reports its coverage; only the fuzz targets link the fuzzer's main.
    target_compile_options(velmor_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
# Hardening. Sanitised builds do not need the first two options; the third needs an optimised build.
if(NOT VELMOR_SANITIZE AND NOT VELMOR_SANITIZE_THREADS)
    target_compile_options(velmor_options INTERFACE -fstack-protector-strong
        $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE$<SEMICOLON>-D_FORTIFY_SOURCE=2>)
endif()
if(WIN32)
    target_link_options(velmor_options INTERFACE -Wl,--dynamicbase,--nxcompat,--no-insert-timestamp
        -fstack-protector-strong)  # brings libssp
else()
    target_link_options(velmor_options INTERFACE -Wl,-z,relro,-z,now)
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)
endif()
# The symbols that velmor_strip separates: functions and lines.
target_compile_options(velmor_options INTERFACE $<$<CONFIG:Release>:-g1>)
target_include_directories(velmor_options INTERFACE
    ${PROJECT_SOURCE_DIR}/src ${PROJECT_BINARY_DIR}/generated)
if(WIN32)
    # COM interfaces have no virtual destructor: their objects delete themselves by their own type.
    target_compile_options(velmor_options INTERFACE -Wno-non-virtual-dtor)
    target_compile_definitions(velmor_options INTERFACE UNICODE _UNICODE WINVER=0x0601 _WIN32_WINNT=0x0601)
    target_link_options(velmor_options INTERFACE -static)
    # Doubles of 64 bits, as on every other machine, not the 80 bits of the coprocessor.
    target_compile_options(velmor_options INTERFACE -msse2 -mfpmath=sse)
endif()

if(CMAKE_CROSSCOMPILING)
    # Every test runs on this machine's Wine, in a prefix of the build folder.
    set(VELMOR_WINE ${PROJECT_SOURCE_DIR}/tools/wine --prefix ${PROJECT_BINARY_DIR}/wineprefix)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
        list(INSERT VELMOR_WINE 1 --64)
    endif()
    set(CMAKE_CROSSCOMPILING_EMULATOR ${VELMOR_WINE})
endif()

# velmor_room(NAME [room ...]): one static library from the folder, on the rooms that it may use.
# With separate libraries the linker checks the direction of dependencies, too.
function(velmor_room name)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    if(NOT sources)  # a room that holds only headers so far
        set(sources ${PROJECT_BINARY_DIR}/generated/empty.cpp)
        if(NOT EXISTS ${sources})
            file(WRITE ${sources} "")
        endif()
    endif()
    add_library(velmor_${name} STATIC ${sources})
    set_target_properties(velmor_${name} PROPERTIES LINKER_LANGUAGE CXX)
    target_link_libraries(velmor_${name} PUBLIC velmor_options)
    foreach(room ${ARGN})
        target_link_libraries(velmor_${name} PUBLIC velmor_${room})
    endforeach()
endfunction()

# velmor_members(ROOM CLASS ...): the late-bound members of public classes whose core class is in the room, from the IDL.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(VELMOR_IDL ${PROJECT_SOURCE_DIR}/src/com/kvVelmor3.idl)
set(VELMOR_GENERATE_MEMBERS ${PROJECT_SOURCE_DIR}/tools/generate_members.py)
function(velmor_members room)
    foreach(class ${ARGN})
        set(file ${PROJECT_BINARY_DIR}/generated/members/${class}.cpp)
        add_custom_command(OUTPUT ${file}
            COMMAND Python3::Interpreter ${VELMOR_GENERATE_MEMBERS} table ${class} ${VELMOR_IDL} ${file}
            DEPENDS ${VELMOR_IDL} ${VELMOR_GENERATE_MEMBERS}
            VERBATIM)
        set_source_files_properties(${file} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)  # all use the same names
        target_sources(velmor_${room} PRIVATE ${file})
    endforeach()
endfunction()

# velmor_strip(TARGET): moves the symbols of a released binary to a .debug file next to it, which debuggers find.
function(velmor_strip name)
    if(CMAKE_BUILD_TYPE STREQUAL "Release")
        set(file $<TARGET_FILE:${name}>)
        add_custom_command(TARGET ${name} POST_BUILD
            COMMAND ${CMAKE_OBJCOPY} --preserve-dates --only-keep-debug ${file} ${file}.debug
            COMMAND ${CMAKE_STRIP} --preserve-dates --strip-all ${file}
            COMMAND ${CMAKE_OBJCOPY} --preserve-dates --add-gnu-debuglink=${file}.debug ${file}
            VERBATIM)
    endif()
endfunction()

# The version as the component shows it: major, minor as "00", revision as "0000".
string(REGEX MATCH "..$" minor 0${PROJECT_VERSION_MINOR})
string(REGEX MATCH "....$" revision 000${PROJECT_VERSION_PATCH})
set(VELMOR_VERSION_TEXT ${PROJECT_VERSION_MAJOR}.${minor}.${revision})

# velmor_version_resource(TARGET FILE KIND): the version resource of a Windows binary, APP or DLL.
if(WIN32)
    enable_language(RC)
endif()
function(velmor_version_resource target file kind)
    cmake_path(GET file STEM name)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/Version.rc.in ${CMAKE_CURRENT_BINARY_DIR}/version.rc @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/version.rc)
endfunction()

# velmor_test(NAME [library ...]): the tests of tests/NAME as one program and one CTest entry.
function(velmor_test name)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
    if(NOT sources)
        return()
    endif()
    add_executable(test_${name} ${sources})
    target_link_libraries(test_${name} PRIVATE ${ARGN} velmor_doubles GTest::gtest_main velmor_options)
    target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(test_${name} PRIVATE
        VELMOR_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}" VELMOR_CORPUS="${PROJECT_SOURCE_DIR}/../shared/corpus")
    add_test(NAME ${name} COMMAND test_${name})
    velmor_test_needs_wine(${name})
endfunction()

# velmor_test_needs_wine(TEST ...): the tests start in a finished prefix, and Wine's processes end
# after the last one. Does nothing in a native build.
function(velmor_test_needs_wine)
    if(NOT CMAKE_CROSSCOMPILING)
        return()
    endif()
    set_property(TEST ${ARGN} APPEND PROPERTY FIXTURES_REQUIRED wine)
    get_property(made GLOBAL PROPERTY VELMOR_WINE_FIXTURE)
    if(NOT made)
        set_property(GLOBAL PROPERTY VELMOR_WINE_FIXTURE ON)
        add_test(NAME wine_make COMMAND ${VELMOR_WINE} --make)
        add_test(NAME wine_stop COMMAND ${VELMOR_WINE} --stop)
        set_tests_properties(wine_make PROPERTIES FIXTURES_SETUP wine TIMEOUT 300)
        set_tests_properties(wine_stop PROPERTIES FIXTURES_CLEANUP wine TIMEOUT 60)
    endif()
endfunction()
