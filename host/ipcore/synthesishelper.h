// SPDX-License-Identifier: MIT
#pragma once

#include "hostplatform_global.h"
#include "ipcore/synthesizeargs.h"

#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QStringList>

class QProgressDialog;

namespace IPCore {

// Synthesises a core's Verilog sources into a netlist of their own, with
// yosys run as a separate process. The program is the "yosys" beside the
// application when there is one, else the one on PATH.
//
// Both tools are served by yosys; the choice, TarvexSynthesis unless set,
// decides where the results lie:
//     TarvexSynthesis  <tempDir>/<file>.vg
//     SynplifyPro      <tempDir>/<impl_name>/<file>.vm
// and either way the instantiation template <tempDir>/<file>_tmp.v. The
// netlist's first line names the device of the arguments. yosys writes no
// VHDL, so a run asked for VHDL fails without starting it. The script and the
// tool's full log stay beside the netlist as <project>.ys and <project>.log.
//
// start() returns at once; finished() follows from the event loop, also when
// the run could not be started. Then resultCode, errorList and messageTitle
// say how it went.
class HOSTPLATFORM_EXPORT SynthesisHelper : public QObject
{
    Q_OBJECT

public:
    enum SynthesizeTool { SynplifyPro = 0, TarvexSynthesis = 1 };
    Q_ENUM(SynthesizeTool)

    explicit SynthesisHelper(QObject *parent = nullptr);
    ~SynthesisHelper() override;

    void setSynthesizeTool(SynthesizeTool tool);
    SynthesizeTool synthesizeTool() const { return m_tool; }
    void setArgs(const SynthesizeArgs &args);

    // The dialog is application modal, so that nothing that depends on the
    // run can be started again while it lasts. Its Cancel stops the run.
    // Without widgets (command-line runs) there is no dialog.
    void setProgressDlgWindowTitle(const QString &title);
    void showProgressDlg();
    void hideProgressDlg();

    void start();
    bool isRunning() const;

    // Where the program is looked for; empty when there is none.
    static QString program();

    int resultCode = 0; // 0 when the netlist and the template are written
    QStringList errorList;
    QString messageTitle; // what failed, as a headline for errorList

signals:
    void finished(int resultCode);

private:
    void fail(const QString &error);
    void finish();
    void onProcessFinished(int exitCode, QProcess::ExitStatus status);
    void onProcessError(QProcess::ProcessError error);
    void onCanceled();
    bool writeScript(const QString &path, QString &error) const;
    bool stampDevice(QString &error) const;
    bool writeTemplate(QString &error) const;
    QString implDir() const;
    QString netlistPath() const;
    QString templatePath() const;
    QString topModule() const;

    SynthesizeTool m_tool = TarvexSynthesis;
    SynthesizeArgs m_args;
    QString m_title;
    QPointer<QProgressDialog> m_progress;
    QProcess *m_process = nullptr;
    bool m_canceled = false;
    bool m_finishing = false;
};

} // namespace IPCore
