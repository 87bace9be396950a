// SPDX-License-Identifier: MIT
#include "corecatalogue.h"

#include <ipcore/baseipcore.h>
#include <ipcore/ippackage.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPluginLoader>
#include <QSettings>

namespace {

// Holds the working directory at a core's "Create In" directory for its
// lifetime. A directory that does not exist is not made here: whether and
// when to make it is the core's decision, taken when it generates. Until
// then the working directory stays as it was.
class CreateInDirectory
{
public:
    explicit CreateInDirectory(const QString &dir)
        : m_previous(QDir::currentPath())
        , m_changed(QFileInfo(dir).isDir() && QDir::setCurrent(dir))
    {}
    ~CreateInDirectory()
    {
        if (m_changed)
            QDir::setCurrent(m_previous);
    }
    CreateInDirectory(const CreateInDirectory &) = delete;
    CreateInDirectory &operator=(const CreateInDirectory &) = delete;

private:
    const QString m_previous;
    const bool m_changed;
};

} // namespace

CoreCatalogue::~CoreCatalogue()
{
    // The cores' code lives in the plug-ins: delete them while it is loaded.
    for (const Entry &entry : qAsConst(m_entries))
        delete entry.core;
    qDeleteAll(m_loaders);
}

QString CoreCatalogue::defaultRoot()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../ipcore"));
}

void CoreCatalogue::load(const QString &root)
{
    const QDir rootDir(root);
    if (!rootDir.exists()) {
        m_problems << tr("No IP package directory \"%1\".").arg(QDir::toNativeSeparators(root));
        return;
    }
    const QStringList packages = rootDir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &package : packages)
        loadPackage(rootDir.absoluteFilePath(package));
}

void CoreCatalogue::loadPackage(const QString &dir)
{
    const QStringList files
        = QDir(dir).entryList(QStringList(QStringLiteral("lib*.so")), QDir::Files, QDir::Name);
    for (const QString &file : files) {
        const QString path = QDir(dir).absoluteFilePath(file);
        auto *loader = new QPluginLoader(path);
        QObject *root = loader->instance();
        auto *package = qobject_cast<IPCore::IPPackage *>(root);
        if (!package) {
            m_problems
                << (root ? tr("\"%1\" is not an IP package.").arg(QDir::toNativeSeparators(path))
                         : tr("Cannot load \"%1\": %2")
                               .arg(QDir::toNativeSeparators(path), loader->errorString()));
            loader->unload();
            delete loader;
            continue;
        }
        m_loaders << loader;
        package->packagePath = dir;
        const QList<IPCore::BaseIPCore *> cores = package->ipCores();
        if (cores.isEmpty())
            m_problems << tr("\"%1\" offers no core: its description is missing or "
                             "incomplete.")
                              .arg(QDir::toNativeSeparators(path));
        for (IPCore::BaseIPCore *core : cores)
            m_entries << Entry{core, dir, root};
    }
}

int CoreCatalogue::transceiverQuads(const DEV::DeviceArg &device) const
{
    for (const Entry &entry : m_entries) {
        int quads = 0;
        if (QMetaObject::invokeMethod(entry.package, "transceiverQuads", Qt::DirectConnection,
                                      Q_RETURN_ARG(int, quads), Q_ARG(QString, device.family))
            && quads > 0)
            return quads;
    }
    return 0;
}

QString CoreCatalogue::protocolListing(const DEV::DeviceArg &device) const
{
    QString text;
    QList<QObject *> asked;
    for (const Entry &entry : m_entries) {
        // A package of several cores answers once.
        if (asked.contains(entry.package))
            continue;
        asked << entry.package;
        QString listing;
        if (QMetaObject::invokeMethod(entry.package, "protocolListing", Qt::DirectConnection,
                                      Q_RETURN_ARG(QString, listing), Q_ARG(QString, device.id)))
            text += listing;
    }
    return text;
}

QStringList CoreCatalogue::listing(const DEV::DeviceArg &device) const
{
    QStringList lines;
    for (const Entry &entry : m_entries) {
        const IPCore::BaseIPCore *core = entry.core;
        lines << QStringList{core->id(), core->name(), core->version(),
                             core->category().join(QStringLiteral(", ")),
                             core->isSupported(device) ? tr("supported") : tr("not supported")}
                     .join(QLatin1Char('\t'));
    }
    return lines;
}

IPCore::BaseIPCore *CoreCatalogue::coreForConfiguration(const QString &file, QString *error) const
{
    if (!QFileInfo(file).isFile()) {
        *error = tr("\"%1\" does not exist.").arg(QDir::toNativeSeparators(file));
        return nullptr;
    }
    const QString type
        = QSettings(file, QSettings::IniFormat).value(QStringLiteral("type")).toString();
    for (const Entry &entry : m_entries) {
        if (entry.core->id() == type)
            return entry.core;
    }
    *error = tr("No installed core reads \"%1\": it was made by \"%2\".")
                 .arg(QDir::toNativeSeparators(file), type);
    return nullptr;
}

QString CoreCatalogue::deviceOfConfiguration(const QString &file)
{
    return QSettings(file, QSettings::IniFormat).value(QStringLiteral("target_device")).toString();
}

QString CoreCatalogue::descriptionFile(const Entry &entry, QString *error)
{
    const QString name = entry.core->summaryFile();
    if (name.isEmpty()) {
        *error = tr("%1 names no description page.").arg(entry.core->name());
        return QString();
    }
    // The name comes from the package's description file: it must not lead
    // out of the package's folder.
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\'))
        || name == QLatin1String("..")) {
        *error = tr("%1 names \"%2\" as its description page, which is no plain file name.")
                     .arg(entry.core->name(), name);
        return QString();
    }
    const QString path = QDir(entry.packageDir).filePath(QStringLiteral("doc/") + name);
    if (!QFileInfo(path).isFile()) {
        *error = tr("The description page of %1, \"%2\", does not exist.")
                     .arg(entry.core->name(), QDir::toNativeSeparators(path));
        return QString();
    }
    return path;
}

void CoreCatalogue::createCore(IPCore::BaseIPCore *core, const QString &dir,
                               const DEV::DeviceArg &device)
{
    // Made absolute while a relative name still means what the caller meant.
    const QString path = QFileInfo(dir).absoluteFilePath();
    const CreateInDirectory createIn(path);
    core->create(path, device);
}

void CoreCatalogue::openConfiguration(IPCore::BaseIPCore *core, const QString &file)
{
    const QFileInfo info(file);
    const QString dir = info.absolutePath();
    const QString path = info.absoluteFilePath();
    const CreateInDirectory createIn(dir);
    core->open(dir, path);
}
