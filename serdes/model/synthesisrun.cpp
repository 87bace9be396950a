// SPDX-License-Identifier: MIT
#include "model/serdes.h"
#include "model/serdesip_common.h"
#include "plugin/serdesipconstants.h"

#include <ipcore/ipcoremessages.h>
#include <ipcore/netlistdecode.h>
#include <ipcore/synthesishelper.h>
#include <utils/fileutils.h>

#include <QEventLoop>
#include <QFileInfo>

namespace IPSERDESIP {

bool waitForRunSyntheSis(const DEV::DeviceArg &device, const QMap<QString, QVariant> &args,
                         const QMap<QString, QVariant> &info, const QStringList &sources,
                         const QString &name, QString &netlist, QObject *parent)
{
    // The helper and the loop live as long as `parent`; without one they
    // must not outlive the call.
    QObject callOwner;
    QObject *owner = parent ? parent : &callOwner;
    auto *helper = new IPCore::SynthesisHelper(owner);

    const QString tool = args.value(QLatin1String(SYNTHESIS_TOOL)).toString();
    const QString file = args.value(QLatin1String(FILE_NAME)).toString();
    const QString module = args.value(QLatin1String(MODULE_NAME)).toString();
    const int language = args.value(QLatin1String(LANGUAGE)).toInt();
    const QString label = info.value(QLatin1String(IPCore::Info::KEY_LABEL)).toString();
    const QString dataDir = info.value(QLatin1String(IPCore::Info::KEY_DATADIRECTORY)).toString();
    const bool tarvex = tool == QLatin1String(SYNTHESIS_TARVEX);
    const bool synplify = tool == QLatin1String(SYNTHESIS_SYNPLIFY);

    // An unknown tool leaves the helper's own choice; the run goes on, and
    // the copies below then find no netlist path.
    if (tarvex)
        helper->setSynthesizeTool(IPCore::SynthesisHelper::TarvexSynthesis);
    else if (synplify)
        helper->setSynthesizeTool(IPCore::SynthesisHelper::SynplifyPro);

    const QString base = QString(serdes::instance()->workingDir() + QLatin1Char('/') + file);
    const QString tempDir = QString(base + QStringLiteral("/temp/") + name);

    QStringList sourceFiles;
    for (const QString &source : sources)
        sourceFiles << QString(dataDir + QLatin1Char('/') + source);
    IPCore::SynthesizeArgs synthesizeArgs;
    synthesizeArgs.tempDir = tempDir;
    synthesizeArgs.projectName = name;
    synthesizeArgs.fileName = file;
    synthesizeArgs.device = device;
    synthesizeArgs.options.insert(QLatin1String(IPCore::IMPL_NAME), QLatin1String(IMPL_NAME));
    synthesizeArgs.options.insert(QLatin1String(IPCore::WRITE_VHDL), language == 1);
    synthesizeArgs.options.insert(QLatin1String(IPCore::TOP_MODULE), module);
    synthesizeArgs.options.insert(QLatin1String(IPCore::INCLUDE_PATHS),
                                  QStringList{tempDir, dataDir});
    synthesizeArgs.options.insert(QLatin1String(IPCore::SOURCE_FILES), sourceFiles);

    helper->setProgressDlgWindowTitle(label);
    helper->showProgressDlg();
    helper->setArgs(synthesizeArgs);
    helper->start();

    // Connected after start(): the helper reports only from the event loop.
    auto *loop = new QEventLoop(owner);
    QObject::connect(helper, SIGNAL(finished(int)), loop, SLOT(quit()));
    loop->exec();

    int status = helper->resultCode;
    QStringList errors;
    if (status != 0)
        errors = helper->errorList;

    // Language index 0 is Verilog and anything else VHDL for the file names;
    // only exactly 1 asks the tool for VHDL and has a component file.
    const bool verilog = language == 0;
    const QString target = QString(base + QLatin1Char('/') + file
                                   + (verilog ? QStringLiteral(".v") : QStringLiteral(".vhd")));
    const QString templateSuffix = verilog ? QStringLiteral("_tmp.v") : QStringLiteral("_tmp.vhd");
    const QString templateSource = QString(tempDir + QLatin1Char('/') + file + templateSuffix);
    const QString templateTarget = QString(base + QLatin1Char('/') + file + templateSuffix);
    const QString decodeTarget = QString(base + QLatin1Char('/') + file + QStringLiteral(".vo"));
    QString toolNetlist;
    QString decodeInput;
    QString componentSource;
    QString componentTarget;
    if (tarvex) {
        const QString stem = QString(tempDir + QLatin1Char('/') + file);
        toolNetlist = QString(stem + (verilog ? QStringLiteral(".vg") : QStringLiteral(".vhg")));
        decodeInput = QString(stem + QStringLiteral(".vg"));
        if (language == 1) {
            componentSource = QString(stem + QStringLiteral(".vho"));
            componentTarget = QString(base + QLatin1Char('/') + file + QStringLiteral(".vho"));
        }
    } else if (synplify) {
        const QString stem = QString(tempDir + QLatin1Char('/') + QLatin1String(IMPL_NAME)
                                     + QLatin1Char('/') + file);
        toolNetlist = QString(stem + (verilog ? QStringLiteral(".vm") : QStringLiteral(".vhm")));
        decodeInput = QString(stem + QStringLiteral(".vm"));
    }

    if (status == 0) {
        QString error;
        if (!Utils::FileUtils::copyFile(toolNetlist, target, &error)
            || !Utils::FileUtils::copyFile(templateSource, templateTarget, &error)) {
            errors << error;
            status = -1;
        }
        bool componentFailed = false;
        if (QFileInfo::exists(componentSource)) {
            error.clear();
            if (!Utils::FileUtils::copyFile(componentSource, componentTarget, &error)) {
                errors << error;
                status = -1;
                componentFailed = true;
            }
        }
        if (!componentFailed && status == 0) {
            QString decodeError;
            status = IPCore::decode(base, decodeInput, decodeTarget, decodeError);
            errors << decodeError;
        }
    }

    helper->hideProgressDlg();

    if (status != 0) {
        QString title = helper->messageTitle;
        if (title.isEmpty())
            title = QLatin1String(SYNTHESIS_ERROR_TITLE);
        IPCore::showErrorMsgs(title, errors);
        return false;
    }
    netlist = target;
    return true;
}

} // namespace IPSERDESIP
