// SPDX-License-Identifier: MIT
//
// Drives the Upar arbiter wrapper with DRP_NUM requesters against a register
// port model with random latency, and checks on every cycle that
//   - at most one requester holds the grant, and ready goes only to it;
//   - the port carries exactly the granted requester's held command, keeps it
//     until it is answered, and a read returns what that requester last wrote;
//   - no waiting requester sees more than DRP_NUM - 1 accesses of others
//     before its grant, and under full load grants rotate strictly;
//   - every request is served before the time limit.
// Prints "PASS" at the end, or "FAIL" with the first violations.
`include "define.vh"

module tb_upar_arbiter;

`include "parameter.vh"

    localparam integer ADDR_WIDTH = 24;
    localparam integer DATA_WIDTH = 32;
    localparam integer SLOTS = 4;            // registers per requester
    localparam integer RANDOM_OPS = 200;     // per requester, with random pauses
    localparam integer LOADED_OPS = 100;     // per requester, all asking at once
    localparam integer TIME_LIMIT = 200000;  // cycles

    reg clk = 1'b0;
    reg rst = 1'b1;
    always #5 clk = !clk;

    reg  [DRP_NUM-1:0]            req;
    reg  [DRP_NUM-1:0]            wr;
    reg  [DRP_NUM*ADDR_WIDTH-1:0] addr;
    reg  [DRP_NUM*DATA_WIDTH-1:0] wdata;
    wire [DRP_NUM-1:0]            grant;
    wire [DRP_NUM-1:0]            ready;
    wire [DATA_WIDTH-1:0]         rdata;
    wire                          upar_wr;
    wire                          upar_rd;
    wire [ADDR_WIDTH-1:0]         upar_addr;
    wire [DATA_WIDTH-1:0]         upar_wdata;
    wire [DATA_WIDTH-1:0]         upar_rdata;
    wire                          upar_ready;

    \~upar_arbiter_wrap.`MODULE_NAME dut (
        .upar_clk(clk),
        .upar_rst(rst),
        .drp_req(req),
        .drp_wr(wr),
        .drp_addr(addr),
        .drp_wdata(wdata),
        .drp_grant(grant),
        .drp_ready(ready),
        .drp_rdata(rdata),
        .upar_wr(upar_wr),
        .upar_rd(upar_rd),
        .upar_addr(upar_addr),
        .upar_wdata(upar_wdata),
        .upar_rdata(upar_rdata),
        .upar_ready(upar_ready)
    );

    // The register port: a memory that answers after 0 to 3 cycles.
    reg [DATA_WIDTH-1:0] regs [0:255];
    reg [1:0]            latency;
    assign upar_ready = (upar_wr || upar_rd) && latency == 0;
    assign upar_rdata = regs[upar_addr[7:0]];

    integer errors = 0;
    integer i;
    integer j;
    integer ones;
    integer owner;

    task fail(input [8*64-1:0] what, input integer who);
        begin
            errors = errors + 1;
            if (errors <= 10)
                $display("FAIL at %0t: %0s (requester %0d)", $time, what, who);
        end
    endtask

    always @(posedge clk) begin
        if (rst)
            latency <= $random;
        else if (upar_wr || upar_rd) begin
            if (upar_ready) begin
                if (upar_wr)
                    regs[upar_addr[7:0]] <= upar_wdata;
                latency <= $random;
            end else begin
                latency <= latency - 1'b1;
            end
        end
    end

    // Requesters. Each uses registers of its own, so that it knows what a
    // read must return.
    reg [DATA_WIDTH-1:0] shadow [0:DRP_NUM*SLOTS-1];
    integer              done [0:DRP_NUM-1];
    integer              target;
    reg                  loaded = 1'b0;
    integer              slot;

    task new_command(input integer who);
        begin
            slot = {$random} % SLOTS;
            wr[who] = $random;
            addr[who*ADDR_WIDTH +: ADDR_WIDTH] = who * SLOTS + slot;
            wdata[who*DATA_WIDTH +: DATA_WIDTH] = $random;
        end
    endtask

    always @(posedge clk) begin
        if (!rst) begin
            for (i = 0; i < DRP_NUM; i = i + 1) begin
                if (req[i] && ready[i]) begin
                    slot = addr[i*ADDR_WIDTH +: ADDR_WIDTH];
                    if (wr[i])
                        shadow[slot] = wdata[i*DATA_WIDTH +: DATA_WIDTH];
                    else if (rdata !== shadow[slot])
                        fail("read returned another value", i);
                    done[i] = done[i] + 1;
                    if (loaded && done[i] < target)
                        new_command(i);
                    else
                        req[i] <= 1'b0;
                end else if (!req[i] && done[i] < target && (loaded || $random % 3 == 0)) begin
                    new_command(i);
                    req[i] <= 1'b1;
                end
            end
        end
    end

    // A port command not yet answered must stay as it is.
    reg                                    pending = 1'b0;
    reg [1+ADDR_WIDTH+DATA_WIDTH:0]        pending_command;
    always @(posedge clk) begin
        pending <= !rst && (upar_wr || upar_rd) && !upar_ready;
        pending_command <= {upar_wr, upar_rd, upar_addr, upar_wdata};
    end

    // Checks, on the values that settle after each rising edge.
    reg [DRP_NUM-1:0] last_grant = 0;
    integer           previous = -1;
    integer           waited [0:DRP_NUM-1];

    always @(negedge clk) begin
        if (!rst) begin
            ones = 0;
            owner = -1;
            for (i = 0; i < DRP_NUM; i = i + 1) begin
                if (grant[i]) begin
                    ones = ones + 1;
                    owner = i;
                end
                if (ready[i] && !grant[i])
                    fail("ready without grant", i);
            end
            if (ones > 1)
                fail("more than one grant", owner);
            if (upar_wr && upar_rd)
                fail("write and read at once", owner);
            if ((upar_wr || upar_rd) != (ones == 1))
                fail("port command without a grant, or a grant without one", owner);
            if (pending && {upar_wr, upar_rd, upar_addr, upar_wdata} !== pending_command)
                fail("port command changed before it was answered", owner);
            if (owner >= 0) begin
                if (!req[owner])
                    fail("grant without request", owner);
                if (upar_wr != wr[owner]
                    || upar_addr !== addr[owner*ADDR_WIDTH +: ADDR_WIDTH]
                    || (upar_wr && upar_wdata !== wdata[owner*DATA_WIDTH +: DATA_WIDTH]))
                    fail("port carries another command than the granted one", owner);
            end
            if (grant != last_grant && owner >= 0) begin
                for (j = 0; j < DRP_NUM; j = j + 1) begin
                    if (j == owner)
                        waited[j] = 0;
                    else if (req[j]) begin
                        waited[j] = waited[j] + 1;
                        if (waited[j] > DRP_NUM - 1)
                            fail("waited longer than one round", j);
                    end
                end
                if (loaded && &req && previous >= 0 && owner != (previous + 1) % DRP_NUM)
                    fail("grants do not rotate under full load", owner);
                previous = owner;
            end
            for (j = 0; j < DRP_NUM; j = j + 1) begin
                if (!req[j])
                    waited[j] = 0;
            end
            last_grant = grant;
        end
    end

    function all_done(input integer count);
        integer n;
        begin
            all_done = 1'b1;
            for (n = 0; n < DRP_NUM; n = n + 1)
                if (done[n] != count || req[n])
                    all_done = 1'b0;
        end
    endfunction

    initial begin
        req = 0;
        wr = 0;
        addr = 0;
        wdata = 0;
        target = RANDOM_OPS;
        for (i = 0; i < 256; i = i + 1)
            regs[i] = 32'h5a5a0000 + i;
        for (i = 0; i < DRP_NUM * SLOTS; i = i + 1)
            shadow[i] = 32'h5a5a0000 + i;
        for (i = 0; i < DRP_NUM; i = i + 1) begin
            done[i] = 0;
            waited[i] = 0;
        end
        repeat (3) @(posedge clk);
        rst <= 1'b0;

        while (!all_done(RANDOM_OPS))
            @(posedge clk);
        @(posedge clk);
        target = RANDOM_OPS + LOADED_OPS;
        loaded = 1'b1;
        while (!all_done(RANDOM_OPS + LOADED_OPS))
            @(posedge clk);
        repeat (4) @(posedge clk);
        if (grant != 0 || upar_wr || upar_rd)
            fail("port still busy with nobody asking", -1);
        if (errors == 0)
            $display("PASS: %0d requesters, %0d accesses each", DRP_NUM, RANDOM_OPS + LOADED_OPS);
        else
            $display("FAIL: %0d violations", errors);
        $finish;
    end

    initial begin
        #(TIME_LIMIT * 10);
        $display("FAIL: requests left unserved after %0d cycles", TIME_LIMIT);
        for (i = 0; i < DRP_NUM; i = i + 1)
            $display("  requester %0d: %0d done", i, done[i]);
        $finish;
    end

endmodule
