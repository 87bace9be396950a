# SPDX-License-Identifier: MIT
#
# Included by each sample protocol's CMakeLists.txt by a relative path. This
# folder is no library: each plug-in compiles the sources it needs into
# itself, so that it stays a single file that depends on the installed kit
# only.
#
#     sample_protocol(<name> SOURCES <file>... [COMMON <stem>...] [HELP <file>...])
#
# builds lib<name>.so from its own SOURCES, the plug-in root, dialog frame,
# shared fields, the page of the fields every dialog has and tier knowledge
# of this folder, and the further COMMON stems (a .cpp and a
# .h each). The HELP files lie beside the plug-in, where summaryFile() looks
# for them.
find_package(SerdesIP 1.2 REQUIRED)

set(SAMPLES_COMMON_DIR ${CMAKE_CURRENT_LIST_DIR})

function(sample_protocol name)
    cmake_parse_arguments(ARG "" "" "SOURCES;COMMON;HELP" ${ARGN})
    if(ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "sample_protocol(${name}): \"${ARG_UNPARSED_ARGUMENTS}\" comes "
                            "before SOURCES; the lists are SOURCES, COMMON and HELP.")
    endif()
    set(common "")
    foreach(stem samplepackage sampledlg fields clockpage devicetier ${ARG_COMMON})
        if(NOT EXISTS ${SAMPLES_COMMON_DIR}/${stem}.cpp
           OR NOT EXISTS ${SAMPLES_COMMON_DIR}/${stem}.h)
            message(FATAL_ERROR "sample_protocol(${name}): COMMON names \"${stem}\", but "
                                "${SAMPLES_COMMON_DIR} does not hold both ${stem}.cpp and "
                                "${stem}.h.")
        endif()
        list(APPEND common ${SAMPLES_COMMON_DIR}/${stem}.cpp ${SAMPLES_COMMON_DIR}/${stem}.h)
    endforeach()
    serdes_add_protocol(${name} SOURCES ${ARG_SOURCES} ${common})
    if(ARG_HELP)
        install(FILES ${ARG_HELP} DESTINATION ipcore/SERDES_IP/IPlib/${name})
    endif()
endfunction()
