# SPDX-License-Identifier: MIT
#
# cmake -DIVERILOG=... -DVVP=... -DWORK=<dir with the headers> -DSOURCES=<files>
#       -DTESTBENCH=<file> [-DYOSYS=... -DTOP=<top module>] -P simulate.cmake
# Runs the testbench on the sources, or with YOSYS on the gate-level netlist
# synthesised from them with TOP as its top module. The compile must be free
# of warnings, and the run must print PASS and no FAIL.

foreach(tool IVERILOG VVP YOSYS)
    if(DEFINED ${tool} AND (NOT ${tool} OR ${tool} MATCHES "NOTFOUND$"))
        message(FATAL_ERROR "${tool} is not installed (scripts/install-deps.sh installs it)")
    endif()
endforeach()

set(design ${SOURCES})
if(DEFINED YOSYS)
    # Yosys does not expand macros inside escaped identifiers, so the top
    # module is found as the one nothing instantiates and given its name.
    string(REPLACE ";" " " files "${SOURCES}")
    file(WRITE ${WORK}/synth.ys
        "read_verilog -I ${WORK} ${files}\n"
        "hierarchy -auto-top\n"
        "rename -top \\${TOP}\n"
        "synth -flatten -top \\${TOP}\n"
        "write_verilog -noattr ${WORK}/netlist.v\n")
    execute_process(COMMAND ${YOSYS} -q -s ${WORK}/synth.ys
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "yosys:\n${output}")
    endif()
    set(design ${WORK}/netlist.v)
endif()

execute_process(
    COMMAND ${IVERILOG} -g2005 -Wall -I ${WORK} -o ${WORK}/tb.vvp ${design} ${TESTBENCH}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0 OR NOT output STREQUAL "")
    message(FATAL_ERROR "iverilog:\n${output}")
endif()

execute_process(COMMAND ${VVP} -n ${WORK}/tb.vvp
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
message("${output}")
if(NOT result EQUAL 0 OR output MATCHES "FAIL" OR NOT output MATCHES "PASS")
    message(FATAL_ERROR "The simulation failed.")
endif()
