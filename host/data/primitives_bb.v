// SPDX-License-Identifier: MIT
//
// Black-box declarations of the device library's primitives that generated
// wrappers and protocol modules instantiate, so that a design can be compiled,
// linted and simulated structurally without the device's cell models. The
// bodies are empty on purpose: the cells are implemented by the device.
//
// Upar is the quad's register port: a command is held on UPAR_WR or UPAR_RD,
// UPAR_ADDR and UPAR_WDATA until UPAR_READY is high at a rising UPAR_CLK;
// UPAR_RDATA is valid with UPAR_READY after a read.

(* blackbox *)
module SERDES_QUAD #(
    parameter integer QUAD = 0
) (
    input  wire        REFCLK0_P,
    input  wire        REFCLK0_N,
    input  wire        REFCLK1_P,
    input  wire        REFCLK1_N,
    output wire        QPLL0_LOCK,
    output wire        QPLL1_LOCK,
    output wire [1:0]  QPLL_CLK,
    input  wire        UPAR_CLK,
    input  wire        UPAR_RST,
    input  wire        UPAR_WR,
    input  wire        UPAR_RD,
    input  wire [23:0] UPAR_ADDR,
    input  wire [31:0] UPAR_WDATA,
    output wire [31:0] UPAR_RDATA,
    output wire        UPAR_READY
);
endmodule

(* blackbox *)
module SERDES_LANE #(
    parameter integer LANE = 0
) (
    output wire        TXP,
    output wire        TXN,
    input  wire        RXP,
    input  wire        RXN,
    input  wire [1:0]  QPLL_CLK,
    input  wire        REFCLK,
    output wire        CPLL_LOCK,
    input  wire        TX_RESET,
    input  wire        RX_RESET,
    output wire        TX_READY,
    output wire        RX_READY,
    input  wire        TX_USRCLK,
    input  wire [63:0] TX_DATA,
    input  wire [7:0]  TX_CTRL,
    output wire        TX_OUTCLK,
    input  wire        RX_USRCLK,
    output wire [63:0] RX_DATA,
    output wire [7:0]  RX_CTRL,
    output wire        RX_OUTCLK
);
endmodule

(* blackbox *)
module DIFFIN (
    input  wire I,
    input  wire IB,
    output wire O
);
endmodule

(* blackbox *)
module GCLKBUF (
    input  wire I,
    output wire O
);
endmodule

(* blackbox *)
module GCLKMUX (
    input  wire I0,
    input  wire I1,
    input  wire S,
    output wire O
);
endmodule

(* blackbox *)
module INBUF (
    input  wire I,
    output wire O
);
endmodule

(* blackbox *)
module OUTBUF (
    input  wire I,
    output wire O
);
endmodule

(* blackbox *)
module IOBUF (
    input  wire I,
    input  wire T,
    output wire O,
    inout  wire IO
);
endmodule

(* blackbox *)
module GND (
    output wire G
);
endmodule

(* blackbox *)
module VCC (
    output wire P
);
endmodule
