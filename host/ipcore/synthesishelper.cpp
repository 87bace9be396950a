// SPDX-License-Identifier: MIT
#include "ipcore/synthesishelper.h"

#include "ipcore/verilognetlist.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProgressDialog>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTextStream>

namespace IPCore {

namespace {

const char OPT_IMPL_NAME[] = "impl_name";
const char OPT_WRITE_VHDL[] = "write_vhdl";
const char OPT_TOP_MODULE[] = "top_module";
const char OPT_INCLUDE_PATHS[] = "include_paths";
const char OPT_SOURCE_FILES[] = "source_files";

const char PROGRAM[] = "yosys";

// Lines of the tool's output that a user needs to see when the run failed:
// its error lines, or, from a program that marks none, its last lines.
QStringList toolErrors(const QString &output)
{
    QStringList lines;
    QStringList marked;
    for (const QString &line : output.split(QLatin1Char('\n'))) {
        const QString text = line.trimmed();
        if (text.isEmpty())
            continue;
        lines << text;
        if (text.contains(QLatin1String("ERROR:")))
            marked << text;
    }
    if (!marked.isEmpty())
        return marked;
    const int keep = 10;
    return lines.mid(qMax(0, lines.size() - keep));
}

QString quoted(const QString &path)
{
    return QString(QLatin1Char('"') + path + QLatin1Char('"'));
}

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

} // namespace

SynthesisHelper::SynthesisHelper(QObject *parent)
    : QObject(parent)
{}

SynthesisHelper::~SynthesisHelper()
{
    if (m_process) {
        // The process must not report into a helper that is half destroyed.
        disconnect(m_process, nullptr, this, nullptr);
        m_process->kill();
        m_process->waitForFinished(5000);
    }
    delete m_progress.data();
}

void SynthesisHelper::setSynthesizeTool(SynthesizeTool tool)
{
    m_tool = tool;
}

void SynthesisHelper::setArgs(const SynthesizeArgs &args)
{
    m_args = args;
}

void SynthesisHelper::setProgressDlgWindowTitle(const QString &title)
{
    m_title = title;
    if (m_progress)
        m_progress->setWindowTitle(title);
}

void SynthesisHelper::showProgressDlg()
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return;
    if (!m_progress) {
        QObject *owner = parent();
        while (owner && !owner->isWidgetType())
            owner = owner->parent();
        QWidget *window = owner ? static_cast<QWidget *>(owner)->window() : nullptr;
        // Created only when asked for: a progress dialog shows itself after a
        // few seconds once it exists, whether anyone showed it or not.
        m_progress = new QProgressDialog(window);
        m_progress->setObjectName(QStringLiteral("synthesisProgress"));
        m_progress->setRange(0, 0);
        m_progress->setAutoClose(false);
        m_progress->setAutoReset(false);
        m_progress->setMinimumDuration(0);
        m_progress->setWindowModality(Qt::ApplicationModal);
        m_progress->setCancelButtonText(tr("Cancel"));
        connect(m_progress.data(), &QProgressDialog::canceled, this, &SynthesisHelper::onCanceled);
    }
    m_progress->reset(); // a Cancel of an earlier run must not stick
    m_progress->setWindowTitle(m_title);
    const QString top = topModule();
    m_progress->setLabelText(top.isEmpty() ? tr("Synthesizing...")
                                           : tr("Synthesizing %1...").arg(top));
    m_progress->show();
}

void SynthesisHelper::hideProgressDlg()
{
    if (m_progress)
        m_progress->hide();
}

bool SynthesisHelper::isRunning() const
{
    return m_process || m_finishing;
}

QString SynthesisHelper::program()
{
    const QFileInfo beside(
        QDir(QCoreApplication::applicationDirPath()).filePath(QLatin1String(PROGRAM)));
    if (beside.isFile() && beside.isExecutable())
        return beside.absoluteFilePath();
    return QStandardPaths::findExecutable(QLatin1String(PROGRAM));
}

QString SynthesisHelper::implDir() const
{
    if (m_tool == SynplifyPro)
        return QDir(m_args.tempDir)
            .filePath(m_args.options.value(QLatin1String(OPT_IMPL_NAME)).toString());
    return m_args.tempDir;
}

QString SynthesisHelper::netlistPath() const
{
    const QString suffix = m_tool == SynplifyPro ? QStringLiteral(".vm") : QStringLiteral(".vg");
    return QDir(implDir()).filePath(QString(m_args.fileName + suffix));
}

QString SynthesisHelper::templatePath() const
{
    return QDir(m_args.tempDir).filePath(QString(m_args.fileName + QStringLiteral("_tmp.v")));
}

QString SynthesisHelper::topModule() const
{
    return m_args.options.value(QLatin1String(OPT_TOP_MODULE)).toString();
}

void SynthesisHelper::start()
{
    if (isRunning()) {
        qWarning("A synthesis is already running; the new start is ignored.");
        return;
    }
    resultCode = 0;
    errorList.clear();
    messageTitle.clear();
    m_canceled = false;
    m_finishing = true; // until finished() is out, the helper counts as busy

    const QMap<QString, QVariant> &options = m_args.options;
    const QStringList sources = options.value(QLatin1String(OPT_SOURCE_FILES)).toStringList();
    const QStringList includes = options.value(QLatin1String(OPT_INCLUDE_PATHS)).toStringList();
    if (m_args.tempDir.isEmpty())
        fail(tr("No working directory is given for the synthesis."));
    if (m_args.fileName.isEmpty())
        fail(tr("No file name is given for the netlist."));
    if (topModule().isEmpty())
        fail(tr("No top module is given for the synthesis."));
    if (m_tool == SynplifyPro && options.value(QLatin1String(OPT_IMPL_NAME)).toString().isEmpty())
        fail(tr("No implementation name is given for the synthesis."));
    if (sources.isEmpty())
        fail(tr("No source files are given for the synthesis."));
    for (const QString &source : sources) {
        if (!QFileInfo(source).isFile())
            fail(tr("The source file \"%1\" does not exist.").arg(native(source)));
    }
    for (const QString &path : sources + includes + QStringList{m_args.tempDir}) {
        if (path.contains(QLatin1Char('"')))
            fail(tr("The path \"%1\" holds a double quote, which the synthesis script cannot "
                    "pass on.")
                     .arg(native(path)));
    }
    if (options.value(QLatin1String(OPT_WRITE_VHDL)).toBool())
        fail(tr("yosys writes no VHDL netlist; generate the core in Verilog."));

    const QString yosys = program();
    if (resultCode == 0 && yosys.isEmpty())
        fail(tr("The synthesis program yosys not found: neither beside the application in "
                "\"%1\" nor on PATH.")
                 .arg(native(QCoreApplication::applicationDirPath())));

    const QString dir = implDir();
    if (resultCode == 0 && !QDir().mkpath(dir))
        fail(tr("Cannot make the directory \"%1\".").arg(native(dir)));
    // A netlist left by an earlier run must not pass for this run's.
    if (resultCode == 0) {
        for (const QString &old : {netlistPath(), templatePath()}) {
            if (QFileInfo::exists(old) && !QFile::remove(old))
                fail(tr("Cannot remove \"%1\" of an earlier run.").arg(native(old)));
        }
    }
    const QString base = m_args.projectName.isEmpty() ? m_args.fileName : m_args.projectName;
    const QString script = QDir(dir).filePath(QString(base + QStringLiteral(".ys")));
    QString error;
    if (resultCode == 0 && !writeScript(script, error))
        fail(error);

    if (resultCode != 0) {
        QMetaObject::invokeMethod(this, &SynthesisHelper::finish, Qt::QueuedConnection);
        return;
    }

    if (m_progress)
        m_progress->setLabelText(tr("Synthesizing %1...").arg(topModule()));
    m_process = new QProcess(this);
    m_process->setWorkingDirectory(dir);
    connect(m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &SynthesisHelper::onProcessFinished);
    connect(m_process, &QProcess::errorOccurred, this, &SynthesisHelper::onProcessError);
    const QString log = QDir(dir).filePath(QString(base + QStringLiteral(".log")));
    m_process->start(
        yosys, {QStringLiteral("-q"), QStringLiteral("-l"), log, QStringLiteral("-s"), script});
}

bool SynthesisHelper::writeScript(const QString &path, QString &error) const
{
    const QMap<QString, QVariant> &options = m_args.options;
    QString read = QStringLiteral("read_verilog");
    const QStringList includes = options.value(QLatin1String(OPT_INCLUDE_PATHS)).toStringList();
    for (int i = 0; i < includes.size(); ++i) {
        QString dir = includes.at(i);
        // yosys takes the quotes of an option's value as part of the path, so
        // a directory with blanks is reached through a link in the run's
        // directory, which is the process's working directory.
        if (dir.contains(QRegularExpression(QStringLiteral("\\s")))) {
            const QString link = QStringLiteral("yosys_include%1").arg(i);
            const QString linkPath = QDir(implDir()).filePath(link);
            QFile::remove(linkPath);
            if (!QFile::link(QFileInfo(dir).absoluteFilePath(), linkPath)) {
                error = tr("Cannot link \"%1\" to the include directory \"%2\".")
                            .arg(native(linkPath), native(dir));
                return false;
            }
            dir = link;
        }
        read += QString(QStringLiteral(" -I ") + dir);
    }
    for (const QString &source : options.value(QLatin1String(OPT_SOURCE_FILES)).toStringList())
        read += QString(QLatin1Char(' ') + quoted(source));
    const QString top = topModule();

    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        QTextStream out(&file);
        out << "# Written for each run; changes are lost when the core is generated again.\n"
            << read
            << '\n'
            // yosys leaves a macro inside an escaped identifier unexpanded, so
            // the sources cannot name their top as the core wants it: the
            // module that nothing instantiates is taken and given that name.
            << "hierarchy -auto-top\n"
            << "rename -top " << top << '\n'
            << "synth -flatten -top " << top << '\n'
            << "write_verilog -noattr " << quoted(netlistPath()) << '\n';
        out.flush();
        if (file.commit())
            return true;
    }
    error
        = tr("Cannot write the synthesis script \"%1\": %2").arg(native(path), file.errorString());
    return false;
}

void SynthesisHelper::onProcessError(QProcess::ProcessError error)
{
    // Any other error is followed by finished(), which reports it.
    if (error != QProcess::FailedToStart || !m_process)
        return;
    fail(tr("yosys at \"%1\" could not be started: %2")
             .arg(native(m_process->program()), m_process->errorString()));
    m_process->deleteLater();
    m_process = nullptr;
    // QProcess may report this from inside start(), and finished() must not
    // come before start() has returned.
    QMetaObject::invokeMethod(this, &SynthesisHelper::finish, Qt::QueuedConnection);
}

void SynthesisHelper::onProcessFinished(int exitCode, QProcess::ExitStatus status)
{
    const QString output = QString::fromLocal8Bit(m_process->readAllStandardError())
                           + QString::fromLocal8Bit(m_process->readAllStandardOutput());
    m_process->deleteLater();
    m_process = nullptr;

    QString error;
    if (m_canceled) {
        fail(tr("The synthesis was canceled."));
    } else if (status == QProcess::CrashExit) {
        fail(tr("yosys crashed."));
        errorList << toolErrors(output);
    } else if (exitCode != 0) {
        fail(tr("yosys ended with exit code %1.").arg(exitCode));
        errorList << toolErrors(output);
    } else if (QFileInfo(netlistPath()).size() == 0) {
        fail(tr("yosys wrote no netlist \"%1\".").arg(native(netlistPath())));
    } else if (!stampDevice(error) || !writeTemplate(error)) {
        fail(error);
    }
    finish();
}

void SynthesisHelper::onCanceled()
{
    if (!m_process)
        return;
    m_canceled = true;
    m_process->kill();
}

void SynthesisHelper::fail(const QString &error)
{
    resultCode = 1;
    errorList << error;
    if (messageTitle.isEmpty()) {
        const QString top = topModule();
        messageTitle = top.isEmpty() ? tr("The synthesis failed.")
                                     : tr("The synthesis of %1 failed.").arg(top);
    }
}

void SynthesisHelper::finish()
{
    m_finishing = false;
    emit finished(resultCode);
}

// The netlist names the device it was made for, so that it tells the same
// once it is copied away from its run.
bool SynthesisHelper::stampDevice(QString &error) const
{
    const DEV::DeviceArg &device = m_args.device;
    const QPair<const char *, QString> fields[] = {
        {"device", device.name},   {"device_id", device.id},    {"part_number", device.partNumber},
        {"family", device.family}, {"package", device.package}, {"speed", device.speed},
    };
    QStringList named;
    for (const auto &field : fields) {
        if (!field.second.isEmpty())
            named << QStringLiteral("%1 %2").arg(QLatin1String(field.first), field.second);
    }
    if (named.isEmpty())
        return true;

    const QString path = netlistPath();
    QFile in(path);
    if (!in.open(QIODevice::ReadOnly)) {
        error = tr("Cannot read the netlist \"%1\": %2").arg(native(path), in.errorString());
        return false;
    }
    const QByteArray netlist = in.readAll();
    in.close();
    QSaveFile out(path);
    if (out.open(QIODevice::WriteOnly)) {
        out.write(QString(QStringLiteral("// Device: ") + named.join(QStringLiteral(", "))
                          + QLatin1Char('\n'))
                      .toUtf8());
        out.write(netlist);
        if (out.commit())
            return true;
    }
    error = tr("Cannot write the netlist \"%1\": %2").arg(native(path), out.errorString());
    return false;
}

bool SynthesisHelper::writeTemplate(QString &error) const
{
    const QString path = netlistPath();
    QFile in(path);
    if (!in.open(QIODevice::ReadOnly)) {
        error = tr("Cannot read the netlist \"%1\": %2").arg(native(path), in.errorString());
        return false;
    }
    const VerilogNetlist netlist(QString::fromUtf8(in.readAll()));
    if (!netlist.error().isEmpty()) {
        error = tr("The netlist \"%1\" cannot be read: %2.").arg(native(path), netlist.error());
        return false;
    }
    const VerilogNetlist::Module *top = netlist.module(topModule());
    if (!top) {
        error = tr("The netlist \"%1\" has no module %2.").arg(native(path), topModule());
        return false;
    }

    QString instance = QStringLiteral("u_") + m_args.fileName;
    for (QChar &c : instance) {
        if (!c.isLetterOrNumber() && c != QLatin1Char('_'))
            c = QLatin1Char('_');
    }
    QStringList connections;
    int width = 0;
    for (const VerilogNetlist::Port &port : top->ports) {
        const QString name = VerilogNetlist::verilogName(port.name);
        connections << QStringLiteral("    .%1(%1)").arg(name);
        width = qMax(width, connections.last().size() + 1);
    }

    QSaveFile out(templatePath());
    if (out.open(QIODevice::WriteOnly | QIODevice::Text)) {
        QTextStream stream(&out);
        stream << "// Instantiation template of " << top->name << ", made with its netlist "
               << QFileInfo(path).fileName() << ".\n"
               << QString(VerilogNetlist::verilogName(top->name) + QLatin1Char(' '))
                      .replace(QLatin1String("  "), QLatin1String(" "))
               << instance << " (\n";
        for (int i = 0; i < connections.size(); ++i) {
            const VerilogNetlist::Port &port = top->ports.at(i);
            const QString item = i + 1 < connections.size()
                                     ? QString(connections.at(i) + QLatin1Char(','))
                                     : connections.at(i);
            stream << item.leftJustified(width) << " // "
                   << QString(port.direction + QLatin1Char(' ') + port.range).trimmed() << '\n';
        }
        stream << ");\n";
        stream.flush();
        if (out.commit())
            return true;
    }
    error = tr("Cannot write the instantiation template \"%1\": %2")
                .arg(native(templatePath()), out.errorString());
    return false;
}

} // namespace IPCore
