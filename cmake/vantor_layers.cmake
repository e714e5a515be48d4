# Layers point one way. Each library publishes the headers of its own folder and nothing else:
# its include root in the build tree holds links to just those headers, under their folder's
# path, so "util/texts.h" resolves only in targets that link the library owning it. An include
# that reaches into a layer a target does not link fails to compile. There is no include path to
# the source root.
function(vantor_publish_headers target)
    file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    set(root ${CMAKE_BINARY_DIR}/include/${target})
    file(REMOVE_RECURSE ${root})
    file(MAKE_DIRECTORY ${root}/${folder})
    foreach(header IN LISTS ARGN)
        if(NOT EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${header})
            message(FATAL_ERROR "${folder}/${header}: published by ${target} but not there")
        endif()
        file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${header} ${root}/${folder}/${header} SYMBOLIC)
    endforeach()
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "INTERFACE_LIBRARY")
        target_include_directories(${target} INTERFACE ${root})
    else()
        target_include_directories(${target} PUBLIC ${root})
    endif()
endfunction()
