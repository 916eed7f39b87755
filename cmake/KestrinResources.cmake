# SPDX-License-Identifier: MIT
# kestrin_resources(TARGET FOLDER): keeps a copy of FOLDER's files as Resources/ beside the program, where
# it looks for them.
function(kestrin_resources target folder)
    file(GLOB_RECURSE resources CONFIGURE_DEPENDS RELATIVE ${folder} ${folder}/*)
    set(copies)
    foreach(resource IN LISTS resources)
        set(copy ${CMAKE_CURRENT_BINARY_DIR}/Resources/${resource})
        add_custom_command(OUTPUT ${copy}
            COMMAND ${CMAKE_COMMAND} -E copy ${folder}/${resource} ${copy}
            DEPENDS ${folder}/${resource}
            COMMENT "Copying ${resource} beside ${target}")
        list(APPEND copies ${copy})
    endforeach()
    add_custom_target(${target}-resources DEPENDS ${copies})
    add_dependencies(${target} ${target}-resources)
endfunction()
