// SPDX-License-Identifier: MIT
#pragma once

// The literals shared by the whole namespace. They are plain `const char[]`
// constants, so each translation unit that includes this header gets its own
// internal copy and no object is built at load time.
//
// The IPCore and TE names are the host's vocabulary, repeated here so that the
// program's own text and the host agree letter for letter.

namespace IPCore {
namespace Info {
const char KEY_ID[] = "ipcore.id";
const char KEY_NAME[] = "ipcore.name";
const char KEY_LABEL[] = "ipcore.label";
const char KEY_VERSION[] = "ipcore.version";
const char KEY_CATEGORY[] = "ipcore.category";
const char KEY_SUMMARY[] = "ipcore.doc.summary";
const char KEY_SUPPORTED[] = "ipcore.device.supported";
const char KEY_UNSUPPORTED[] = "ipcore.device.unsupported";
const char KEY_DATADIRECTORY[] = "ipcore.dir.data";
const char KEY_IPC_VERSION[] = "ipc_version";
const char IPC_VERSION_LATEST[] = "4";
const char KEY_IP_VERSION[] = "version";
const char KEY_IP_TYPE[] = "type";
const char KEY_IP_DEVICE[] = "target_device";
const char GROUP_CONFIG[] = "Config";
const char GROUP_DEVICE[] = "device";
const char KEY_IP_DEVICE_ID[] = "id";
const char KEY_IP_DEVICE_PACKAGE[] = "package";
const char KEY_IP_DEVICE_SPEED[] = "speed";
} // namespace Info

// Keys of the argument map of a synthesis run.
const char TOP_MODULE[] = "top_module";
const char INCLUDE_PATHS[] = "include_paths";
const char WRITE_VHDL[] = "write_vhdl";
const char SOURCE_FILES[] = "source_files";
const char IMPL_NAME[] = "impl_name";

namespace Constants {
// Injected after "<html>" of a help page: %1-%3 the palette's base colour,
// %4-%6 the text colour that reads on it.
const char HTML_STYLE_OTHER[] = "<style>body {background-color: rgb(%1, %2, %3)}\n"
                                "h1 { color : %4}\n"
                                "p { color : %5}\n"
                                "li { color : %6}\n"
                                "</style>";
} // namespace Constants
} // namespace IPCore

namespace TE {
// Result tag of the register file in the host's flow manager.
const char RES_SERDES_CSR[] = "RES.serdes.csr";
} // namespace TE

namespace IPSERDESIP {

// Description map and .ipc keys of this core.
const char CUR_VERSION[] = "1.2";
const char LANGUAGE[] = "LANG";
const char MODULE_NAME[] = "module";
const char FILE_NAME[] = "file";
const char SYNTHESIS_TOOL[] = "Synthesis_tool";
const char CREATEIN[] = "CREATEIN";
const char MODULE_NAME_OLD[] = "Module_Name";
const char FILE_NAME_OLD[] = "File_Name";
const char KEYS[] = "KEYS";
const char ALLACCESS[] = "All_access";
const char SRIOHAVE_X2_TRUE[] = "sriohaveX2_true";
const char SRIOHAVE_X2_FALSE[] = "sriohaveX2_false";

// Separators, file names and tool paths. Tool paths are relative to the host
// application's directory.
const char NAME_SPLIT[] = ":";
const char PARAMERTER_SPLIT[] = "&&";
const char IP_FILE_FILTER[] = "lib*.so";
const char FILE_MOD[] = "serdes.mod";
const char UPAR_ARBITER_PROJNAME[] = "Upar_Arbiter";
const char UPAR_ARBITER_DEFINENAME[] = "define.vh";
const char UPAR_ARBITER_PARAMETER[] = "parameter.vh";
const char IMPL_NAME[] = "rev_1";
// Synthesis tools by their names in the dialog, and the headline of errors
// found after a run that itself went well.
const char SYNTHESIS_TARVEX[] = "TarvexSynthesis";
const char SYNTHESIS_SYNPLIFY[] = "Synplify Pro";
const char SYNTHESIS_ERROR_TITLE[] = "Core generation occur errors.";
const char APP_SERDES_TOML_TO_CSR_880K[] = "serdes_toml_to_csr.dist/serdes_toml_to_csr_880k.bin";
const char APP_SERDES_TOML_TO_CSR_370K[] = "serdes_toml_to_csr.dist/serdes_toml_to_csr_370k.bin";
const char APP_SERDES_TOML_TO_CSR_90K[] = "serdes_toml_to_csr.dist/serdes_toml_to_csr_90k.bin";
const char APP_SERDES_CSR_TASK_GEN[] = "serdes_toml_to_csr.dist/csr_task_gen.bin";

// Topology element names of the clock network model.
const char Q0[] = "Q0";
const char Q1[] = "Q1";

const char Q0_QPLL0[] = "Q0_QPLL0";
const char Q0_QPLL1[] = "Q0_QPLL1";
const char Q1_QPLL0[] = "Q1_QPLL0";
const char Q1_QPLL1[] = "Q1_QPLL1";

const char Q0_CPLL0[] = "Q0_CPLL0";
const char Q0_CPLL1[] = "Q0_CPLL1";
const char Q0_CPLL2[] = "Q0_CPLL2";
const char Q0_CPLL3[] = "Q0_CPLL3";
const char Q1_CPLL0[] = "Q1_CPLL0";
const char Q1_CPLL1[] = "Q1_CPLL1";
const char Q1_CPLL2[] = "Q1_CPLL2";
const char Q1_CPLL3[] = "Q1_CPLL3";

const char Q0_LANE0[] = "Q0_LANE0";
const char Q0_LANE1[] = "Q0_LANE1";
const char Q0_LANE2[] = "Q0_LANE2";
const char Q0_LANE3[] = "Q0_LANE3";
const char Q1_LANE0[] = "Q1_LANE0";
const char Q1_LANE1[] = "Q1_LANE1";
const char Q1_LANE2[] = "Q1_LANE2";
const char Q1_LANE3[] = "Q1_LANE3";

const char Q0_LANE0_TX[] = "Q0_LANE0_TX";
const char Q0_LANE0_RX[] = "Q0_LANE0_RX";
const char Q0_LANE1_TX[] = "Q0_LANE1_TX";
const char Q0_LANE1_RX[] = "Q0_LANE1_RX";
const char Q0_LANE2_TX[] = "Q0_LANE2_TX";
const char Q0_LANE2_RX[] = "Q0_LANE2_RX";
const char Q0_LANE3_TX[] = "Q0_LANE3_TX";
const char Q0_LANE3_RX[] = "Q0_LANE3_RX";
const char Q1_LANE0_TX[] = "Q1_LANE0_TX";
const char Q1_LANE0_RX[] = "Q1_LANE0_RX";
const char Q1_LANE1_TX[] = "Q1_LANE1_TX";
const char Q1_LANE1_RX[] = "Q1_LANE1_RX";
const char Q1_LANE2_TX[] = "Q1_LANE2_TX";
const char Q1_LANE2_RX[] = "Q1_LANE2_RX";
const char Q1_LANE3_TX[] = "Q1_LANE3_TX";
const char Q1_LANE3_RX[] = "Q1_LANE3_RX";

const char Q0_MUX0[] = "Q0_MUX0";
const char Q0_MUX1[] = "Q0_MUX1";
const char Q0_MUX2[] = "Q0_MUX2";
const char Q0_MUX3[] = "Q0_MUX3";
const char Q1_MUX0[] = "Q1_MUX0";
const char Q1_MUX1[] = "Q1_MUX1";
const char MUX_Q0_TO_Q1[] = "MUX_Q0_TO_Q1";

// The reference pins' constants are shorter than their model names.
const char Q0_REF0[] = "Q0_REFCLK0";
const char Q0_REF1[] = "Q0_REFCLK1";
const char Q0_REF2[] = "Q0_REFCLK2";
const char Q0_REF3[] = "Q0_REFCLK3";
const char Q1_REF0[] = "Q1_REFCLK0";
const char Q1_REF1[] = "Q1_REFCLK1";

const char Q0_GPIO0[] = "Q0_GPIO0";
const char Q0_GPIO1[] = "Q0_GPIO1";
const char Q0_GPIO2[] = "Q0_GPIO2";
const char Q0_GPIO3[] = "Q0_GPIO3";
const char Q0_GPIO[] = "Q0_GPIO";
const char Q0_MCLK[] = "Q0_MCLK";

} // namespace IPSERDESIP
