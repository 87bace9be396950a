// SPDX-License-Identifier: MIT
//
// ipcoregen: the IP Core Generator. With a display it opens the catalogue
// window; with --list, or when no display is available, it prints the
// catalogue for one device and exits; --list-devices prints the device
// database and exits. With --open and any of --generate,
// --report or --schematic it regenerates a saved configuration without a
// person, display or not; --verbose adds the debug lines of the core and its
// tools to what such a run prints.

#include "batchrun.h"
#include "corecatalogue.h"
#include "mainwindow.h"

#include <core/idecore.h>
#include <dev/devicedb.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>
#include <QTimer>

#include <memory>

namespace {

bool displayAvailable()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY")
           || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
           || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

// The device the user named, or the first device of the default family.
DEV::DeviceArg findDevice(const QString &id, QString *error)
{
    const DEV::DeviceDb *db = Core::IdeCore::deviceDataBase();
    if (!id.isEmpty()) {
        const DEV::DeviceArg device = db->findByID(id);
        if (!device.isValid())
            *error = QCoreApplication::translate("ipcoregen",
                                                 "Unknown device \"%1\". Known devices: %2.")
                         .arg(id, MainWindow::deviceIds(*db).join(QStringLiteral(", ")));
        return device;
    }
    DEV::ChipFilter filter;
    filter.family = QStringLiteral("RK9C-880D");
    const QList<DEV::DeviceArg> devices = db->filterDevice(filter);
    if (!devices.isEmpty())
        return devices.first();
    if (!db->devices().isEmpty())
        return db->devices().first();
    *error = QCoreApplication::translate("ipcoregen", "The device database \"%1\" lists no device.")
                 .arg(Core::IdeCore::deviceDataBasePath());
    return DEV::DeviceArg();
}

// findDevice(), the reason printed when there is no device.
DEV::DeviceArg chosenDevice(const QString &id)
{
    QString reason;
    const DEV::DeviceArg device = findDevice(id, &reason);
    if (!device.isValid())
        QTextStream(stderr) << reason << '\n';
    return device;
}

// The installed cores; what could not be loaded is printed as a warning.
void loadCatalogue(CoreCatalogue &catalogue)
{
    catalogue.load(CoreCatalogue::defaultRoot());
    QTextStream err(stderr);
    for (const QString &problem : catalogue.problems())
        err << QCoreApplication::translate("ipcoregen", "warning: %1").arg(problem) << '\n';
}

// The handler the toolkit installed, and whether a run without a person
// passes the debug lines of the cores and their tools on to it.
QtMessageHandler toolkitHandler = nullptr;
bool showDebugLines = false;

void batchMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtDebugMsg && !showDebugLines)
        return;
    // The cores' dialogs are made but never shown to anyone; the offscreen
    // platform's complaint about window sizes is no news then.
    if (text == QLatin1String("This plugin does not support propagateSizeHints()"))
        return;
    toolkitHandler(type, context, text);
}

// An option of a run without a person, and whether the one it goes with is
// given too.
struct Needs
{
    bool given;
    bool met;
    const char *option;
    const char *needed;
};

// Why the options of a run without a person do not go together; empty when
// they do.
QString batchMisuse(bool open, bool create, const QList<Needs> &needs)
{
    if (open == create)
        return QCoreApplication::translate(
            "ipcoregen", "A run without a person works on one configuration: give --open FILE "
                         "or --new FILE, not both.");
    for (const Needs &need : needs) {
        if (need.given && !need.met)
            return QCoreApplication::translate("ipcoregen", "%1 goes with %2 only.")
                .arg(QLatin1String(need.option), QLatin1String(need.needed));
    }
    return QString();
}

// The protocols of the installed cores for one device, as the cores list them.
int printProtocols(const QString &deviceId)
{
    const DEV::DeviceArg device = chosenDevice(deviceId);
    if (!device.isValid())
        return 2;
    CoreCatalogue catalogue;
    loadCatalogue(catalogue);
    const QString listing = catalogue.protocolListing(device);
    if (listing.isEmpty()) {
        QTextStream(stderr) << QCoreApplication::translate("ipcoregen",
                                                           "No installed core lists protocols.")
                            << '\n';
        return 1;
    }
    QTextStream(stdout) << listing;
    return 0;
}

int printCatalogue(const QString &deviceId)
{
    QTextStream out(stdout);
    const DEV::DeviceArg device = chosenDevice(deviceId);
    if (!device.isValid())
        return 2;

    CoreCatalogue catalogue;
    loadCatalogue(catalogue);

    out << QCoreApplication::translate("ipcoregen", "Device: %1 (%2, %3)")
               .arg(device.id, device.name, device.family)
        << '\n';
    for (const QString &line : catalogue.listing(device))
        out << line << '\n';
    return 0;
}

// The device database, one device a line under a header, in aligned columns:
// identifier, family, name and transceiver quads. A device without
// transceivers has 0; the quads of one with transceivers are the installed
// cores' knowledge, "-" when none of them knows its family. Read here rather
// than through the host, so that a database that cannot be read is named with
// its reason.
int printDevices()
{
    QTextStream err(stderr);
    const QString path = Core::IdeCore::deviceDataBasePath();
    DEV::DeviceDb db;
    QString error;
    if (!db.load(path, &error)) {
        err << error << '\n';
        return 1;
    }
    if (db.devices().isEmpty()) {
        err << QCoreApplication::translate("ipcoregen",
                                           "The device database \"%1\" lists no device.")
                   .arg(path)
            << '\n';
        return 1;
    }
    CoreCatalogue catalogue;
    loadCatalogue(catalogue);
    QList<QStringList> rows{{QCoreApplication::translate("ipcoregen", "Identifier"),
                             QCoreApplication::translate("ipcoregen", "Family"),
                             QCoreApplication::translate("ipcoregen", "Name"),
                             QCoreApplication::translate("ipcoregen", "Quads")}};
    for (const DEV::DeviceArg &device : db.devices()) {
        QString quads = QStringLiteral("0");
        if (device.features.contains(QLatin1String("SERDES"))) {
            const int count = catalogue.transceiverQuads(device);
            quads = count > 0 ? QString::number(count) : QStringLiteral("-");
        }
        rows << QStringList{device.id, device.family, device.name, quads};
    }
    QVector<int> widths(rows.first().size() - 1, 0);
    for (const QStringList &row : rows) {
        for (int column = 0; column < widths.size(); ++column)
            widths[column] = qMax(widths[column], row.at(column).size());
    }
    QTextStream out(stdout);
    for (const QStringList &row : rows) {
        for (int column = 0; column < widths.size(); ++column)
            out << row.at(column).leftJustified(widths[column] + 2);
        out << row.last() << '\n';
    }
    return 0;
}

// An option of the command line, its description and value name, marked for
// translation where they are written, translated.
QCommandLineOption option(const char *name, const char *description,
                          const char *valueName = nullptr)
{
    const QString text = QCoreApplication::translate("ipcoregen", description);
    return valueName ? QCommandLineOption(QLatin1String(name), text,
                                          QCoreApplication::translate("ipcoregen", valueName))
                     : QCommandLineOption(QLatin1String(name), text);
}

} // namespace

int main(int argc, char *argv[])
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate("ipcoregen", "IP Core Generator"));
    parser.addHelpOption();
    const QCommandLineOption listOption
        = option("list", QT_TRANSLATE_NOOP("ipcoregen", "Print the catalogue and exit."));
    const QCommandLineOption listDevicesOption
        = option("list-devices",
                 QT_TRANSLATE_NOOP(
                     "ipcoregen",
                     "Print the devices (identifier, family, name, transceiver quads) and exit."));
    const QCommandLineOption deviceOption = option(
        "device",
        QT_TRANSLATE_NOOP("ipcoregen", "The target device, by an identifier of --list-devices."),
        QT_TRANSLATE_NOOP("ipcoregen", "id"));
    const QCommandLineOption openOption
        = option("open", QT_TRANSLATE_NOOP("ipcoregen", "Open a configuration file."),
                 QT_TRANSLATE_NOOP("ipcoregen", "file"));
    const QCommandLineOption generateOption = option(
        "generate", QT_TRANSLATE_NOOP("ipcoregen",
                                      "Generate the configuration's files, as OK does, and exit."));
    const QCommandLineOption reportOption = option(
        "report",
        QT_TRANSLATE_NOOP("ipcoregen", "Write the configuration as placed, in JSON, and exit."),
        QT_TRANSLATE_NOOP("ipcoregen", "file"));
    const QCommandLineOption schematicOption
        = option("schematic",
                 QT_TRANSLATE_NOOP("ipcoregen",
                                   "Draw the clock schematic into an SVG or PNG file, and exit."),
                 QT_TRANSLATE_NOOP("ipcoregen", "file"));
    const QCommandLineOption newOption = option(
        "new",
        QT_TRANSLATE_NOOP("ipcoregen",
                          "Write a new configuration file, with no instance yet, for --device."),
        QT_TRANSLATE_NOOP("ipcoregen", "file"));
    const QCommandLineOption moduleOption
        = option("module", QT_TRANSLATE_NOOP("ipcoregen", "With --new: the core's module name."),
                 QT_TRANSLATE_NOOP("ipcoregen", "name"));
    const QCommandLineOption languageOption
        = option("language", QT_TRANSLATE_NOOP("ipcoregen", "With --new: verilog or vhdl."),
                 QT_TRANSLATE_NOOP("ipcoregen", "language"));
    const QCommandLineOption addOption = option(
        "add",
        QT_TRANSLATE_NOOP("ipcoregen",
                          "Add an instance of a protocol, as its dialog's OK would, and save."),
        QT_TRANSLATE_NOOP("ipcoregen", "protocol"));
    const QCommandLineOption setOption = option(
        "set",
        QT_TRANSLATE_NOOP("ipcoregen", "With --add: one parameter, its value written as the "
                                       "configuration file holds it. Repeat for every key."),
        QT_TRANSLATE_NOOP("ipcoregen", "key=value"));
    const QCommandLineOption nameOption = option(
        "name",
        QT_TRANSLATE_NOOP("ipcoregen", "With --add: the instance's name, as its group carries it."),
        QT_TRANSLATE_NOOP("ipcoregen", "name"));
    const QCommandLineOption removeOption = option(
        "remove", QT_TRANSLATE_NOOP("ipcoregen", "Delete an instance by its name, and save."),
        QT_TRANSLATE_NOOP("ipcoregen", "name"));
    const QCommandLineOption checkOption = option(
        "check", QT_TRANSLATE_NOOP("ipcoregen", "Place and check every instance, write nothing, "
                                                "and say every problem; exit 1 if there is one."));
    const QCommandLineOption protocolsOption = option(
        "protocols",
        QT_TRANSLATE_NOOP("ipcoregen", "Print the installed protocols, whether each can be used on "
                                       "--device, and their parameters, and exit."));
    const QCommandLineOption verboseOption
        = option("verbose", QT_TRANSLATE_NOOP("ipcoregen",
                                              "With --generate, --report or --schematic: also "
                                              "print the debug lines of the core and its tools."));
    parser.addOption(listOption);
    parser.addOption(listDevicesOption);
    parser.addOption(deviceOption);
    parser.addOption(openOption);
    parser.addOption(generateOption);
    parser.addOption(reportOption);
    parser.addOption(schematicOption);
    for (const QCommandLineOption &option :
         {newOption, moduleOption, languageOption, addOption, setOption, nameOption, removeOption,
          checkOption, protocolsOption})
        parser.addOption(option);
    parser.addOption(verboseOption);

    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    // Parsed before any application object exists: the choice of a window or
    // a listing decides which kind of application is made.
    parser.parse(arguments);
    const bool wantList = parser.isSet(listOption);
    const bool wantDevices = parser.isSet(listDevicesOption);
    const QString deviceId = parser.value(deviceOption);
    const bool wantBatch
        = parser.isSet(generateOption) || parser.isSet(reportOption)
          || parser.isSet(schematicOption) || parser.isSet(checkOption) || parser.isSet(addOption)
          || parser.isSet(removeOption) || parser.isSet(newOption) || parser.isSet(setOption)
          || parser.isSet(nameOption) || parser.isSet(moduleOption) || parser.isSet(languageOption);

    if (wantBatch && parser.errorText().isEmpty()) {
        const bool add = parser.isSet(addOption);
        const bool create = parser.isSet(newOption);
        const QString misuse
            = batchMisuse(parser.isSet(openOption), create,
                          {{parser.isSet(setOption), add, "--set", "--add"},
                           {parser.isSet(nameOption), add, "--name", "--add"},
                           {parser.isSet(moduleOption), create, "--module", "--new"},
                           {parser.isSet(languageOption), create, "--language", "--new"},
                           {parser.isSet(deviceOption), create, "--device", "--new"}});
        if (!misuse.isEmpty()) {
            QTextStream(stderr) << misuse << '\n';
            return 2;
        }
        if (!displayAvailable())
            qputenv("QT_QPA_PLATFORM", "offscreen");
        showDebugLines = parser.isSet(verboseOption);
        toolkitHandler = qInstallMessageHandler(batchMessage);
        QApplication app(argc, argv);
        QApplication::setApplicationName(QStringLiteral("IP Core Generator"));
        CoreCatalogue catalogue;
        catalogue.load(CoreCatalogue::defaultRoot());
        BatchRun batch(&catalogue);
        batch.generate = parser.isSet(generateOption);
        batch.reportFile = parser.value(reportOption);
        batch.schematicFile = parser.value(schematicOption);
        batch.check = parser.isSet(checkOption);
        batch.removeName = parser.value(removeOption);
        batch.addProtocol = parser.value(addOption);
        batch.addSettings = parser.values(setOption);
        batch.addName = parser.value(nameOption);
        if (!parser.isSet(newOption))
            return batch.run(parser.value(openOption));
        const DEV::DeviceArg device = chosenDevice(deviceId);
        if (!device.isValid())
            return 2;
        return batch.runNew(parser.value(newOption), device, parser.value(moduleOption),
                            parser.value(languageOption));
    }

    if (wantDevices || wantList || parser.isSet(protocolsOption) || !parser.errorText().isEmpty()
        || parser.isSet(QStringLiteral("help")) || !displayAvailable()) {
        QCoreApplication app(argc, argv);
        parser.process(app);
        if (wantDevices)
            return printDevices();
        if (parser.isSet(protocolsOption))
            return printProtocols(deviceId);
        if (!wantList)
            QTextStream(stderr) << QCoreApplication::translate(
                "ipcoregen", "No display is available: printing the catalogue instead.")
                                << '\n';
        return printCatalogue(deviceId);
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("IP Core Generator"));
    QApplication::setOrganizationName(QStringLiteral("ipcoregen"));
    const DEV::DeviceArg device = chosenDevice(deviceId);
    if (!device.isValid())
        return 2;
    auto catalogue = std::make_unique<CoreCatalogue>();
    catalogue->load(CoreCatalogue::defaultRoot());
    MainWindow window(catalogue.get(), device.id);
    window.show();
    if (parser.isSet(openOption)) {
        const QString file = parser.value(openOption);
        QTimer::singleShot(0, &window, [&window, file] { window.openConfigurationFile(file); });
    }
    return app.exec();
}
