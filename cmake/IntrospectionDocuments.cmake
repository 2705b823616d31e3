# The introspection documents of the element kinds (interfaces/*.xml) as a Qt
# resource file, each served as ":/introspection/<ProxyClass>.xml". Both programs build
# them in: the simulator serves them, the client infers an element's kind from them.
function(dbusinterfaces_introspection_resources out_var)
    file(GLOB documents CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/interfaces/*.xml")
    set(entries "")
    foreach(document IN LISTS documents)
        get_filename_component(document_name "${document}" NAME)
        string(APPEND entries "    <file alias=\"${document_name}\">${document}</file>\n")
    endforeach()
    set(qrc "${CMAKE_CURRENT_BINARY_DIR}/introspection.qrc")
    # Written through configure_file so that an unchanged list does not trigger a rebuild.
    file(WRITE "${qrc}.in" "<RCC>\n  <qresource prefix=\"/introspection\">\n${entries}  </qresource>\n</RCC>\n")
    configure_file("${qrc}.in" "${qrc}" COPYONLY)
    set(${out_var} "${qrc}" PARENT_SCOPE)
endfunction()
