# Section 1 man pages made by help2man from each program's own --help, so the text lives
# once, in the program; a "PROGRAM.h2m" beside its code adds what --help leaves out
# (examples, see also). Built when help2man is found; installed in the tools package.
find_program(HELP2MAN_EXECUTABLE help2man)

# dbusinterfaces_add_man_page(TARGET INCLUDE_FILE SUMMARY): SUMMARY is the NAME line.
function(dbusinterfaces_add_man_page target include_file summary)
    # A sanitizer build's programs are for the tests, not to be documented.
    if(NOT HELP2MAN_EXECUTABLE OR DBUSINTERFACES_SANITIZE)
        return()
    endif()
    set(page "${CMAKE_CURRENT_BINARY_DIR}/man/${target}.1")
    # Run through PATH, so that the page's usage line names the program, not a build path.
    add_custom_command(OUTPUT "${page}.gz"
        COMMAND ${CMAKE_COMMAND} -E make_directory "${CMAKE_CURRENT_BINARY_DIR}/man"
        COMMAND ${CMAKE_COMMAND} -E env "PATH=$<TARGET_FILE_DIR:${target}>:$ENV{PATH}" QT_QPA_PLATFORM=offscreen
                ${HELP2MAN_EXECUTABLE} --no-info --no-discard-stderr --version-string=${PROJECT_VERSION}
                "--name=${summary}"
                "--include=${include_file}" "--output=${page}" ${target}
        COMMAND gzip -9 -n -f "${page}"
        DEPENDS ${target} "${include_file}"
        COMMENT "Writing the man page of ${target}"
        VERBATIM)
    add_custom_target(${target}-man-page ALL DEPENDS "${page}.gz")
    install(FILES "${page}.gz" DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
endfunction()
