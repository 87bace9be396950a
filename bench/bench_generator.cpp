// SPDX-License-Identifier: MIT
//
// The parameter file of a design that uses all eight lanes of an 880k device:
// translation, completion and writing, against the floor of writing the same
// bytes to the same file. Prints both times and their ratio.

#include "model/serdes.h"
#include "translate/generator.h"
#include "translate/parser.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <map>
#include <string>

using namespace IPSERDESIP;

namespace {

const char DEVICE[] = "RK9C-880D";

// What a set of protocols gives for eight lanes: rates, clocking, coding and
// analog settings for every lane, and the clock choices of both quads.
QStringList eightLanes()
{
    QStringList lines{"q0_refclk0_freq 156.25", "q1_refclk0_freq 125", "common_clk_src_sel q0",
                      "common_clk_from_q0_sel qpll0", "common_clk_from_q1_sel qpll1"};
    for (int q = 0; q < 2; ++q) {
        const QString quad = QStringLiteral("q%1_").arg(q);
        lines << quad + "enable true" << quad + "tx_quad_clk_sel common"
              << quad + "pma_reset_source csr";
        for (int m = 0; m < 4; ++m) {
            const QString lane = quad + QStringLiteral("ln%1_").arg(m);
            lines << lane + "enable true" << lane + "pll_sel qpll0" << lane + "tx_rate 10.3125"
                  << lane + "rx_rate 10.3125" << lane + "cdr_refclk_sel refmux0"
                  << lane + "pma_width_mode 20" << lane + "8b10b_encode enable"
                  << lane + "8b10b_decode enable" << lane + "word_align enable"
                  << lane + "word_align_pattern k28.5" << lane + "tx_differential_swing 804mV"
                  << lane + "tx_ffe_cm 4" << lane + "tx_ffe_c1 6" << lane + "rx_sd_thsel 75mV"
                  << lane + "ctc enable" << lane + "ctc_pattern 1C" << lane + "rx_coupling ac"
                  << lane + "channel_bonding_master_sel q0_ln0";
        }
    }
    return lines;
}

struct Setup
{
    QTemporaryDir dir;
    QString path;
    QStringList design;
    QByteArray bytes;
};

Setup *setup = nullptr;

void translateAndWrite(benchmark::State &state)
{
    for (auto _ : state) {
        generator writer;
        if (!writer.generateTomlFile(setup->design, setup->path))
            state.SkipWithError("the parameter file was not written");
    }
}

void writeFloor(benchmark::State &state)
{
    for (auto _ : state) {
        QFile file(setup->path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
            state.SkipWithError("the file cannot be written");
            break;
        }
        file.write(setup->bytes);
        file.flush();
        file.close();
    }
}

struct Times
{
    // Per iteration, in microseconds.
    double real = 0;
    double cpu = 0;
};

// Keeps each benchmark's times.
class Recorder : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.error_occurred || run.iterations == 0)
                continue;
            const double iterations = double(run.iterations);
            times[run.benchmark_name()] = {run.real_accumulated_time * 1e6 / iterations,
                                           run.cpu_accumulated_time * 1e6 / iterations};
        }
    }

    std::map<std::string, Times> times;
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);

    serdes::instance()->initilize(QString::fromLatin1(DEVICE));
    parser::instance()->initialize(QString::fromLatin1(DEVICE));
    Setup data;
    data.path = data.dir.filePath(QStringLiteral("serdes_tmp.toml"));
    data.design = eightLanes();
    generator first;
    QFile written(data.path);
    if (!first.generateTomlFile(data.design, data.path) || !written.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot write the parameter file: %s\n",
                     qPrintable(first.getErrStringList().join(QLatin1Char('\n'))));
        return 1;
    }
    data.bytes = written.readAll();
    written.close();
    setup = &data;

    benchmark::RegisterBenchmark("translate_and_write_880k", translateAndWrite);
    benchmark::RegisterBenchmark("write_same_bytes", writeFloor);
    Recorder recorder;
    benchmark::RunSpecifiedBenchmarks(&recorder);
    benchmark::Shutdown();

    const auto full = recorder.times.find("translate_and_write_880k");
    const auto floor = recorder.times.find("write_same_bytes");
    if (full != recorder.times.end() && floor != recorder.times.end() && floor->second.real > 0
        && floor->second.cpu > 0) {
        const Times &a = full->second;
        const Times &b = floor->second;
        std::printf("\n%d design lines, %d bytes written\n", int(data.design.size()),
                    int(data.bytes.size()));
        std::printf("                        real         cpu\n");
        std::printf("translate and write: %8.1f us %8.1f us\n", a.real, a.cpu);
        std::printf("write same bytes:    %8.1f us %8.1f us\n", b.real, b.cpu);
        std::printf("ratio:               %8.2f    %8.2f     (target: at most 3)\n",
                    a.real / b.real, a.cpu / b.cpu);
    }
    parser::destory();
    serdes::destory();
    return 0;
}
