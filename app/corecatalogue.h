// SPDX-License-Identifier: MIT
#pragma once

#include <dev/devicearg.h>

#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>

class QPluginLoader;

namespace IPCore {
class BaseIPCore;
}

// The cores of every IP package installed below one directory. A package is a
// folder of its own there, holding one or more plug-in files "lib*.so".
class CoreCatalogue
{
    Q_DECLARE_TR_FUNCTIONS(CoreCatalogue)

public:
    struct Entry
    {
        IPCore::BaseIPCore *core;
        QString packageDir;
        // The plug-in's root object, which may answer the generator's
        // questions about devices by name (see transceiverQuads()).
        QObject *package;
    };

    CoreCatalogue() = default;
    CoreCatalogue(const CoreCatalogue &) = delete;
    CoreCatalogue &operator=(const CoreCatalogue &) = delete;
    ~CoreCatalogue();

    // The packages below `<application dir>/../ipcore`.
    static QString defaultRoot();

    // Loads every package below `root`. A package that cannot be loaded is
    // passed over, and problems() says why.
    void load(const QString &root);

    const QList<Entry> &entries() const { return m_entries; }
    const QStringList &problems() const { return m_problems; }

    // The core that made the configuration file `file`, named by its "type";
    // null, with the reason in `error`, when no installed core reads it.
    IPCore::BaseIPCore *coreForConfiguration(const QString &file, QString *error) const;
    // The identifier of the device the configuration `file` was made for;
    // empty when the file names none.
    static QString deviceOfConfiguration(const QString &file);

    // The description page of a core: the file its description names as its
    // summary, in the package's "doc" folder. Empty, with the reason in
    // `error`, when it names none or a name that is no plain file name.
    static QString descriptionFile(const Entry &entry, QString *error);

    // The transceiver quads of `device` as the first package that knows its
    // family says, through its invokable "int transceiverQuads(QString
    // family)"; 0 when no package knows it.
    int transceiverQuads(const DEV::DeviceArg &device) const;

    // What the packages that answer "QString protocolListing(QString
    // deviceId)" say about the protocols their cores offer for `device`;
    // empty when none answers.
    QString protocolListing(const DEV::DeviceArg &device) const;

    // One line a core, fields separated by tabs: id, name, version,
    // categories, and whether the device may use it.
    QStringList listing(const DEV::DeviceArg &device) const;

    // Run a core's dialog, for a new core in `dir` or on the configuration
    // `file`, with the core's "Create In" directory as the working directory:
    // the files a core or its tools name without a directory belong beside
    // its other outputs, not wherever the generator was started. The previous
    // working directory is restored afterwards.
    static void createCore(IPCore::BaseIPCore *core, const QString &dir,
                           const DEV::DeviceArg &device);
    static void openConfiguration(IPCore::BaseIPCore *core, const QString &file);

private:
    void loadPackage(const QString &dir);

    QList<Entry> m_entries;
    QList<QPluginLoader *> m_loaders;
    QStringList m_problems;
};
