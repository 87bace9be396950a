# SPDX-License-Identifier: MIT
#
# Included by each sample protocol's CMakeLists.txt by a relative path. This
# folder is no library: each plug-in compiles the sources it needs into
# itself, so that it stays a single file that depends on the installed kit
# only.
#
#     sample_protocol(<name> SOURCES <file>... PARAMETERS <file>.json
#                     [COMMON <stem>...] [HELP <file>...])
#
# builds lib<name>.so from its own SOURCES, the plug-in root, dialog frame,
# shared fields, the page of the fields every dialog has, tier knowledge and
# parameter checks of this folder, and the further COMMON stems (a .cpp and a
# .h each). The HELP files lie beside the plug-in, where summaryFile() looks
# for them.
#
# PARAMETERS is the one description of the protocol's parameter map (see
# parameters.h). It becomes the plug-in's metadata, the text validate()
# checks maps against, and the table that replaces the line
# "<!-- parameters -->" of a HELP page. A change to it configures the
# protocol anew, which rebuilds all three.
if(CMAKE_VERSION VERSION_LESS 3.19)
    message(FATAL_ERROR "The sample protocols read their parameter descriptions with "
                        "string(JSON), which needs CMake 3.19; this is ${CMAKE_VERSION}.")
endif()
find_package(SerdesIP 1.2 REQUIRED)

set(SAMPLES_COMMON_DIR ${CMAKE_CURRENT_LIST_DIR})

# Writes `content` to `path` unless the file holds it already, so that an
# unchanged description rebuilds nothing.
function(_sample_write path content)
    if(EXISTS ${path})
        file(READ ${path} old)
        if(old STREQUAL content)
            return()
        endif()
    endif()
    file(WRITE ${path} "${content}")
endfunction()

function(_sample_html_escape out text)
    string(REPLACE "&" "&amp;" text "${text}")
    string(REPLACE "<" "&lt;" text "${text}")
    string(REPLACE ">" "&gt;" text "${text}")
    set(${out} "${text}" PARENT_SCOPE)
endfunction()

# The values of a JSON array at `json` `...path`, joined by ", ", the empty
# text shown as "".
function(_sample_values out json)
    string(JSON count LENGTH "${json}" ${ARGN})
    set(text "")
    if(count GREATER 0)
        math(EXPR last "${count} - 1")
        foreach(i RANGE ${last})
            string(JSON value GET "${json}" ${ARGN} ${i})
            if(value STREQUAL "")
                set(value "\"\"")
            endif()
            if(NOT text STREQUAL "")
                string(APPEND text ", ")
            endif()
            string(APPEND text "${value}")
        endforeach()
    endif()
    set(${out} "${text}" PARENT_SCOPE)
endfunction()

# Checks the description `file` and sets `out` to its rows of the help page's
# table: key, kind, values or form, default, meaning, per quad.
function(_sample_parameter_rows out file)
    file(READ ${file} json)
    string(JSON count ERROR_VARIABLE error LENGTH "${json}" parameters)
    if(error OR count EQUAL 0)
        message(FATAL_ERROR "${file}: no list \"parameters\" (${error}).")
    endif()
    set(kinds number boolean choice text list)
    set(vocabularies lanes laneNames referenceInputs referencePins referenceMuxes devices)
    set(keys "")
    set(rows "")
    math(EXPR last "${count} - 1")
    foreach(i RANGE ${last})
        foreach(field key kind meaning form default valuesOf perQuad optional values valuesByTier)
            string(JSON ${field} ERROR_VARIABLE missing_${field} GET "${json}" parameters ${i}
                   ${field})
        endforeach()
        set(where "${file}: parameter ${i} (\"${key}\")")
        if(missing_key OR key STREQUAL "" OR key IN_LIST keys)
            message(FATAL_ERROR "${where}: every parameter needs a key of its own.")
        endif()
        list(APPEND keys ${key})
        if(missing_meaning OR NOT kind IN_LIST kinds)
            message(FATAL_ERROR "${where}: needs a meaning and a kind, one of ${kinds}.")
        endif()
        if(NOT missing_valuesOf AND NOT valuesOf IN_LIST vocabularies)
            message(FATAL_ERROR "${where}: valuesOf is one of ${vocabularies}.")
        endif()
        if(kind STREQUAL "choice" AND missing_values AND missing_valuesOf)
            message(FATAL_ERROR "${where}: a choice needs values or valuesOf.")
        endif()
        if(perQuad AND NOT key MATCHES "^Q<n>_.")
            message(FATAL_ERROR "${where}: a per-quad key is written Q<n>_<name>.")
        endif()

        set(allowed "")
        if(NOT missing_values)
            _sample_values(allowed "${json}" parameters ${i} values)
        endif()
        if(NOT missing_valuesByTier)
            string(JSON tiers LENGTH "${json}" parameters ${i} valuesByTier)
            math(EXPR last_tier "${tiers} - 1")
            foreach(t RANGE ${last_tier})
                string(JSON tag MEMBER "${json}" parameters ${i} valuesByTier ${t})
                _sample_values(on_tier "${json}" parameters ${i} valuesByTier ${tag})
                string(APPEND allowed "; on the ${tag} tier: ${on_tier}")
            endforeach()
        endif()
        if(kind STREQUAL "boolean" AND allowed STREQUAL "")
            set(allowed "true, false")
        endif()
        if(NOT missing_form)
            if(NOT allowed STREQUAL "")
                string(APPEND allowed "; ")
            endif()
            string(APPEND allowed "${form}")
        endif()
        if(missing_default)
            set(default "")
        else()
            string(JSON type TYPE "${json}" parameters ${i} default)
            if(type STREQUAL "BOOLEAN")
                if(default)
                    set(default "true")
                else()
                    set(default "false")
                endif()
            elseif(default STREQUAL "")
                set(default "\"\"")
            endif()
        endif()
        if(NOT missing_perQuad AND perQuad)
            set(perQuad "yes")
        else()
            set(perQuad "")
        endif()
        foreach(cell key allowed default meaning)
            _sample_html_escape(${cell} "${${cell}}")
        endforeach()
        set(key "<code>${key}</code>")
        if(NOT missing_optional AND optional)
            string(APPEND key " (optional)")
        endif()
        string(APPEND rows "<tr><td>${key}</td><td>${kind}</td><td>${allowed}</td>"
                           "<td>${default}</td><td>${meaning}</td><td>${perQuad}</td></tr>\n")
    endforeach()
    set(${out} "${rows}" PARENT_SCOPE)
endfunction()

# Builds the description `file` into the plug-in `name`: as the metadata of its
# root object, as the source behind samples::describedParameters(), and as the
# table of the HELP pages that hold "<!-- parameters -->" (the pages to install
# are returned in `help_out`).
function(_sample_describe name file help_out)
    get_filename_component(file ${file} ABSOLUTE)
    if(NOT EXISTS ${file})
        message(FATAL_ERROR "sample_protocol(${name}): PARAMETERS names ${file}, which is missing.")
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    _sample_parameter_rows(rows ${file})
    file(READ ${file} json)

    # samplepackage.h names "protocol.json", which moc looks for beside it and
    # then in the include path, where each plug-in puts its own.
    set(described ${CMAKE_CURRENT_BINARY_DIR}/described)
    _sample_write(${described}/protocol.json "${json}")
    target_include_directories(${name} PRIVATE ${described})

    if(json MATCHES "\\)json\"")
        message(FATAL_ERROR "${file} holds )json\", which ends the text in the plug-in early.")
    endif()
    string(CONCAT source "// Written by samples.cmake from ${file}.\n"
                         "namespace samples {\n"
                         "const char *parameterDescription()\n{\n"
                         "    return R\"json(${json})json\";\n}\n} // namespace samples\n")
    _sample_write(${described}/parameterdescription.cpp "${source}")
    target_sources(${name} PRIVATE ${described}/parameterdescription.cpp)

    set(pages "")
    set(marked FALSE)
    foreach(page ${ARGN})
        get_filename_component(page ${page} ABSOLUTE)
        file(READ ${page} text)
        if(NOT page MATCHES "\\.html$" OR NOT text MATCHES "<!-- parameters -->")
            list(APPEND pages ${page})
            continue()
        endif()
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${page})
        string(CONCAT table "<table border=\"1\" cellspacing=\"0\" cellpadding=\"3\">\n"
                            "<tr><th>Key</th><th>Kind</th><th>Values or form</th><th>Default</th>"
                            "<th>Meaning</th><th>Per quad</th></tr>\n${rows}</table>")
        string(REPLACE "<!-- parameters -->" "${table}" text "${text}")
        get_filename_component(page_name ${page} NAME)
        _sample_write(${described}/${page_name} "${text}")
        list(APPEND pages ${described}/${page_name})
        set(marked TRUE)
    endforeach()
    if(NOT marked)
        message(FATAL_ERROR "sample_protocol(${name}): no HELP page holds the line "
                            "\"<!-- parameters -->\" that the parameter table replaces.")
    endif()
    set(${help_out} ${pages} PARENT_SCOPE)
endfunction()

function(sample_protocol name)
    cmake_parse_arguments(ARG "" "PARAMETERS" "SOURCES;COMMON;HELP" ${ARGN})
    if(ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "sample_protocol(${name}): \"${ARG_UNPARSED_ARGUMENTS}\" comes "
                            "before SOURCES; the lists are SOURCES, COMMON and HELP.")
    endif()
    if(NOT ARG_PARAMETERS)
        message(FATAL_ERROR "sample_protocol(${name}): PARAMETERS names no description of "
                            "the parameter map.")
    endif()
    set(common "")
    foreach(stem samplepackage sampledlg fields clockpage devicetier parameters ${ARG_COMMON})
        if(NOT EXISTS ${SAMPLES_COMMON_DIR}/${stem}.cpp
           OR NOT EXISTS ${SAMPLES_COMMON_DIR}/${stem}.h)
            message(FATAL_ERROR "sample_protocol(${name}): COMMON names \"${stem}\", but "
                                "${SAMPLES_COMMON_DIR} does not hold both ${stem}.cpp and "
                                "${stem}.h.")
        endif()
        list(APPEND common ${SAMPLES_COMMON_DIR}/${stem}.cpp ${SAMPLES_COMMON_DIR}/${stem}.h)
    endforeach()
    serdes_add_protocol(${name} SOURCES ${ARG_SOURCES} ${common} ${ARG_PARAMETERS})
    _sample_describe(${name} ${ARG_PARAMETERS} help ${ARG_HELP})
    install(FILES ${help} DESTINATION ipcore/SERDES_IP/IPlib/${name})
endfunction()
