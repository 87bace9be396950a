# SPDX-License-Identifier: MIT
#
# The kit for protocol authors: the exported headers under include/ and a CMake
# package under lib/cmake/SerdesIP, laid into the staged tree and installed
# with it. A protocol project then does
#     find_package(SerdesIP REQUIRED)   # CMAKE_PREFIX_PATH = the tree
#     serdes_add_protocol(myproto SOURCES ...)

include(CMakePackageConfigHelpers)

set(SERDES_INCLUDE_DIR include)
set(SERDES_PACKAGE_DIR lib/cmake/SerdesIP)

# serdes_export_headers(<folder below include/> <base dir> <header>...)
# Headers keep their path relative to <base dir>, so that includes read the
# same inside and outside this repository.
function(serdes_export_headers folder base)
    foreach(header ${ARGN})
        get_filename_component(absolute ${header} ABSOLUTE BASE_DIR ${base})
        file(RELATIVE_PATH relative ${base} ${absolute})
        get_filename_component(subdir ${relative} DIRECTORY)
        set(destination ${SERDES_INCLUDE_DIR}/${folder}/${subdir})
        configure_file(${absolute} ${SERDES_STAGE_DIR}/${SERDES_INCLUDE_DIR}/${folder}/${relative}
                       COPYONLY)
        install(FILES ${absolute} DESTINATION ${destination})
    endforeach()
endfunction()

function(serdes_write_package)
    set(config ${SERDES_STAGE_DIR}/${SERDES_PACKAGE_DIR}/SerdesIPConfig.cmake)
    set(version ${SERDES_STAGE_DIR}/${SERDES_PACKAGE_DIR}/SerdesIPConfigVersion.cmake)
    configure_file(${CMAKE_SOURCE_DIR}/cmake/SerdesIPConfig.cmake.in ${config} @ONLY)
    write_basic_package_version_file(${version} VERSION ${PROJECT_VERSION}
                                     COMPATIBILITY SameMinorVersion)
    install(FILES ${config} ${version} DESTINATION ${SERDES_PACKAGE_DIR})
endfunction()

# serdes_build_outside(<target> <source dir> <install prefix>)
# Builds a protocol the way its author would: a CMake project of its own,
# configured against the staged tree's package only, and installed below
# <install prefix>, into ipcore/SERDES_IP/IPlib/<name>/ there.
include(ExternalProject)
function(serdes_build_outside target source prefix)
    # The same warnings as the core's own code, and its sanitizers.
    set(flags "-Wall -Wextra")
    if(SERDES_SANITIZE)
        string(APPEND flags " -fsanitize=address,undefined -fno-omit-frame-pointer")
    endif()
    ExternalProject_Add(${target}
        SOURCE_DIR ${source}
        BINARY_DIR ${CMAKE_CURRENT_BINARY_DIR}/${target}-build
        INSTALL_DIR ${prefix}
        CMAKE_ARGS
            -DCMAKE_PREFIX_PATH=${SERDES_STAGE_DIR}
            -DCMAKE_INSTALL_PREFIX=<INSTALL_DIR>
            -DCMAKE_BUILD_TYPE=${CMAKE_BUILD_TYPE}
            -DCMAKE_CXX_FLAGS=${flags}
        BUILD_ALWAYS ON
        DEPENDS SERDES_IP hostplatform
    )
endfunction()
