# SPDX-License-Identifier: MIT
#
# The build lays its products out directly as the host's installation, below
# ${SERDES_STAGE_DIR}, so that every path formed from the application's
# directory resolves in the build tree too. `cmake --install` writes the same
# tree elsewhere. Run paths are relative ($ORIGIN), so a tree still runs after
# it has been moved.

set(SERDES_STAGE_DIR ${CMAKE_BINARY_DIR}/stage CACHE PATH "Where the build lays out the installed tree")

set(SERDES_BIN_DIR bin)
set(SERDES_LIB_DIR lib)
set(SERDES_TOOLS_DIR bin/serdes_toml_to_csr.dist)
set(SERDES_CORE_DIR ipcore/SERDES_IP)
set(SERDES_PROTOCOL_DIR ${SERDES_CORE_DIR}/IPlib)
set(SERDES_PICTURES_DIR data/ipcores)

# serdes_place(<target> <dir in the tree>)
# Puts a target's file at <dir> of the staged tree, installs it at the same
# place, and gives it a run path that reaches lib/ from there.
function(serdes_place target dir)
    file(RELATIVE_PATH to_lib /${dir} /${SERDES_LIB_DIR})
    set(rpath "$ORIGIN/${to_lib}")
    # Protocol plug-ins below the core's directory link libSERDES_IP.so.
    if(dir MATCHES "^${SERDES_CORE_DIR}/")
        file(RELATIVE_PATH to_core /${dir} /${SERDES_CORE_DIR})
        list(APPEND rpath "$ORIGIN/${to_core}")
    endif()
    set_target_properties(${target} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${SERDES_STAGE_DIR}/${dir}
        LIBRARY_OUTPUT_DIRECTORY ${SERDES_STAGE_DIR}/${dir}
        BUILD_WITH_INSTALL_RPATH ON
        INSTALL_RPATH "${rpath}")
    install(TARGETS ${target} RUNTIME DESTINATION ${dir} LIBRARY DESTINATION ${dir})
endfunction()

# serdes_place_files(<dir in the tree> <file>...)
# Copies data files into the staged tree (again whenever they change) and
# installs them at the same place.
function(serdes_place_files dir)
    foreach(file ${ARGN})
        get_filename_component(name ${file} NAME)
        configure_file(${file} ${SERDES_STAGE_DIR}/${dir}/${name} COPYONLY)
    endforeach()
    install(FILES ${ARGN} DESTINATION ${dir})
endfunction()
