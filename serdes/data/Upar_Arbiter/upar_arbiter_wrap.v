// SPDX-License-Identifier: MIT
//
// The Upar arbiter as one core's design instantiates it: DRP_NUM requesters
// (from parameter.vh) on one quad register port, named after the core (from
// define.vh). The handshake is that of the arbiter: a requester holds drp_req
// and its command until its drp_ready bit is high at a rising upar_clk, and
// drp_rdata is valid then; drp_grant shows who owns the port.
`include "define.vh"

module \~upar_arbiter_wrap.`MODULE_NAME (
    upar_clk,
    upar_rst,
    drp_req,
    drp_wr,
    drp_addr,
    drp_wdata,
    drp_grant,
    drp_ready,
    drp_rdata,
    upar_wr,
    upar_rd,
    upar_addr,
    upar_wdata,
    upar_rdata,
    upar_ready
);

`include "parameter.vh"

    // The widths of the quad's Upar port.
    localparam integer ADDR_WIDTH = 24;
    localparam integer DATA_WIDTH = 32;

    input  wire                             upar_clk;
    input  wire                             upar_rst;
    input  wire [DRP_NUM-1:0]               drp_req;
    input  wire [DRP_NUM-1:0]               drp_wr;
    input  wire [DRP_NUM*ADDR_WIDTH-1:0]    drp_addr;
    input  wire [DRP_NUM*DATA_WIDTH-1:0]    drp_wdata;
    output wire [DRP_NUM-1:0]               drp_grant;
    output wire [DRP_NUM-1:0]               drp_ready;
    output wire [DATA_WIDTH-1:0]            drp_rdata;
    output wire                             upar_wr;
    output wire                             upar_rd;
    output wire [ADDR_WIDTH-1:0]            upar_addr;
    output wire [DATA_WIDTH-1:0]            upar_wdata;
    input  wire [DATA_WIDTH-1:0]            upar_rdata;
    input  wire                             upar_ready;

    \~upar_arbiter.`MODULE_NAME #(
        .NUM(DRP_NUM),
        .ADDR_WIDTH(ADDR_WIDTH),
        .DATA_WIDTH(DATA_WIDTH)
    ) u_arbiter (
        .clk(upar_clk),
        .rst(upar_rst),
        .req(drp_req),
        .req_wr(drp_wr),
        .req_addr(drp_addr),
        .req_wdata(drp_wdata),
        .grant(drp_grant),
        .ready(drp_ready),
        .rdata(drp_rdata),
        .upar_wr(upar_wr),
        .upar_rd(upar_rd),
        .upar_addr(upar_addr),
        .upar_wdata(upar_wdata),
        .upar_rdata(upar_rdata),
        .upar_ready(upar_ready)
    );

endmodule
