# What is installed besides the library (src/api), and the Debian packages that cpack makes of it.

if(WIN32)
    return()
endif()

# The page is the documentation of the command line as a manual page, if pandoc is there (./package installs it).
find_program(VELMOR_PANDOC pandoc)
set(man ${PROJECT_BINARY_DIR}/velmor.1.gz)
if(VELMOR_PANDOC)
    add_custom_command(OUTPUT ${man}
        COMMAND ${CMAKE_COMMAND} -E env PANDOC=${VELMOR_PANDOC} VERSION=${PROJECT_VERSION}
            ${PROJECT_SOURCE_DIR}/tools/manual_page ${PROJECT_SOURCE_DIR}/docs/command-line.md ${man}
        DEPENDS ${PROJECT_SOURCE_DIR}/tools/manual_page ${PROJECT_SOURCE_DIR}/docs/command-line.md
        VERBATIM)
    add_custom_target(velmor_manual ALL DEPENDS ${man})
    install(FILES ${man} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
endif()

install(TARGETS velmor RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)

# velmor_completion(SHELL FILE): the script that completes velmor's command line.
function(velmor_completion shell file)
    set(script ${PROJECT_BINARY_DIR}/completion.${shell})
    add_custom_command(OUTPUT ${script} COMMAND velmor --completion ${shell} > ${script} DEPENDS velmor VERBATIM)
    add_custom_target(velmor_completion_${shell} ALL DEPENDS ${script})
    get_filename_component(folder ${file} DIRECTORY)
    get_filename_component(name ${file} NAME)
    install(FILES ${script} DESTINATION ${CMAKE_INSTALL_DATADIR}/${folder} RENAME ${name} COMPONENT program)
endfunction()
velmor_completion(bash bash-completion/completions/velmor)
velmor_completion(zsh zsh/vendor-completions/_velmor)
velmor_completion(fish fish/vendor_completions.d/velmor.fish)

# The notices of the libraries that are linked in; ./package writes them.
install(FILES ${PROJECT_BINARY_DIR}/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/velmor
    COMPONENT program OPTIONAL)
install(FILES ${PROJECT_BINARY_DIR}/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libvelmor-dev
    COMPONENT development OPTIONAL)
install(FILES ${PROJECT_BINARY_DIR}/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/python3-velmor
    COMPONENT python OPTIONAL)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmor)
set(CPACK_PACKAGE_CONTACT "The Velmor project <velmor@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "engine for document templates")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL program development)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME velmor)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION text)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
    "The program velmor answers the tags of text and RTF templates, merges RTF\n documents, and finds the mistakes of templates.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvelmor-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "zlib1g-dev, libssl-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "The C++ library: its header, the static library, and the files for CMake\n and pkg-config.")
if(VELMOR_HAS_PYTHON)
    list(APPEND CPACK_COMPONENTS_ALL python)
endif()
# The module is of one minor version of Python, and the next one needs another.
math(EXPR next "${Python_VERSION_MINOR} + 1")
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-velmor)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
    "python3 (>= ${Python_VERSION_MAJOR}.${Python_VERSION_MINOR}), python3 (<< ${Python_VERSION_MAJOR}.${next})")
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
    "${PROJECT_SOURCE_DIR}/src/python/debian/postinst;${PROJECT_SOURCE_DIR}/src/python/debian/prerm")
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_COMPONENT_PYTHON_DESCRIPTION
    "The Python package velmor: it answers the tags of text and RTF templates, finds\n their mistakes, merges and joins RTF documents.")
include(CPack)
