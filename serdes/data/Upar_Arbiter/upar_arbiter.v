// SPDX-License-Identifier: MIT
//
// Shares one Upar register port among NUM requesters, round-robin.
//
// Requester i raises req[i] with its command on req_wr[i] (1 write, 0 read),
// its slice of req_addr and its slice of req_wdata, and holds all of them until
// ready[i] is high at a rising clk. The access completes at that edge, and
// rdata holds the read data while ready[i] is high. A req[i] still high after
// the edge asks for a further access.
//
// grant[i] is high from the edge at which the arbiter takes requester i's
// command until its access completes; at most one bit of grant is ever high.
// After requester i is served the search starts at i + 1, so a requester that
// waits is granted before any other is served twice: at most NUM - 1 accesses
// of others come between its request and its grant.
//
// The Upar side follows the quad's register port: the command stays on
// upar_wr or upar_rd, upar_addr and upar_wdata until upar_ready is high at a
// rising clk. One idle cycle follows each access, in which the next requester
// is chosen.
//
// The module is named after the core, as the wrapper is, so that the arbiters
// of several cores can stand in one design.
`include "define.vh"

module \~upar_arbiter.`MODULE_NAME #(
    parameter integer NUM = 4,
    parameter integer ADDR_WIDTH = 24,
    parameter integer DATA_WIDTH = 32
) (
    input  wire                         clk,
    input  wire                         rst,        // synchronous, active high
    input  wire [NUM-1:0]               req,
    input  wire [NUM-1:0]               req_wr,
    input  wire [NUM*ADDR_WIDTH-1:0]    req_addr,
    input  wire [NUM*DATA_WIDTH-1:0]    req_wdata,
    output reg  [NUM-1:0]               grant,
    output wire [NUM-1:0]               ready,
    output wire [DATA_WIDTH-1:0]        rdata,
    output reg                          upar_wr,
    output reg                          upar_rd,
    output reg  [ADDR_WIDTH-1:0]        upar_addr,
    output reg  [DATA_WIDTH-1:0]        upar_wdata,
    input  wire [DATA_WIDTH-1:0]        upar_rdata,
    input  wire                         upar_ready
);

    localparam integer INDEX_WIDTH = NUM > 1 ? $clog2(NUM) : 1;

    reg  [INDEX_WIDTH-1:0] first;   // where the search for the next requester starts
    reg  [INDEX_WIDTH-1:0] owner;   // the requester being served while busy
    wire                   busy = |grant;

    reg  [INDEX_WIDTH-1:0] winner;
    reg                    found;
    integer                k;
    integer                candidate;

    always @* begin
        found = 1'b0;
        winner = first;
        for (k = 0; k < NUM; k = k + 1) begin
            candidate = first + k;
            if (candidate >= NUM)
                candidate = candidate - NUM;
            if (!found && req[candidate]) begin
                found = 1'b1;
                winner = candidate;
            end
        end
    end

    assign ready = upar_ready ? grant : {NUM{1'b0}};
    assign rdata = upar_rdata;

    always @(posedge clk) begin
        if (rst) begin
            grant <= {NUM{1'b0}};
            first <= {INDEX_WIDTH{1'b0}};
            owner <= {INDEX_WIDTH{1'b0}};
            upar_wr <= 1'b0;
            upar_rd <= 1'b0;
            upar_addr <= {ADDR_WIDTH{1'b0}};
            upar_wdata <= {DATA_WIDTH{1'b0}};
        end else if (busy) begin
            if (upar_ready) begin
                grant <= {NUM{1'b0}};
                upar_wr <= 1'b0;
                upar_rd <= 1'b0;
                first <= owner == NUM - 1 ? {INDEX_WIDTH{1'b0}} : owner + 1'b1;
            end
        end else if (found) begin
            grant <= {{NUM-1{1'b0}}, 1'b1} << winner;
            owner <= winner;
            upar_wr <= req_wr[winner];
            upar_rd <= !req_wr[winner];
            upar_addr <= req_addr[winner*ADDR_WIDTH +: ADDR_WIDTH];
            upar_wdata <= req_wdata[winner*DATA_WIDTH +: DATA_WIDTH];
        end
    end

endmodule
