// SPDX-License-Identifier: MIT
#include "protocol/protocolcatalogue.h"

#include "plugin/serdesipconstants.h"
#include "protocol/baseprotocol.h"
#include "protocol/protocolpackage.h"
#include "tiers/tier.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QPluginLoader>

#include <memory>

namespace IPSERDESIP {

namespace {

// Rows of fields in columns as wide as their widest field, two blanks
// apart, each line indented by `indent`.
QString table(const QList<QStringList> &rows, const QString &indent)
{
    QVector<int> widths;
    for (const QStringList &row : rows) {
        widths.resize(qMax(widths.size(), row.size()));
        for (int column = 0; column < row.size(); ++column)
            widths[column] = qMax(widths[column], row.at(column).size());
    }
    QString text;
    for (const QStringList &row : rows) {
        QString line = indent;
        for (int column = 0; column < row.size(); ++column)
            line += column + 1 < row.size() ? row.at(column).leftJustified(widths[column] + 2)
                                            : row.at(column);
        text += line.trimmed().isEmpty() ? QString() : line + QLatin1Char('\n');
    }
    return text;
}

QString tr(const char *text)
{
    return QCoreApplication::translate("IPSERDESIP::ProtocolCatalogue", text);
}

// A parameter's allowed values on the tier tagged `tier` ("valuesByTier"
// before "values"), the empty text as "", then the form its value takes.
QString valuesOrForm(const QJsonObject &parameter, const QString &tier)
{
    const QJsonObject byTier = parameter.value(QLatin1String("valuesByTier")).toObject();
    const QJsonArray values = byTier.contains(tier)
                                  ? byTier.value(tier).toArray()
                                  : parameter.value(QLatin1String("values")).toArray();
    QStringList texts;
    for (const QJsonValue &value : values) {
        const QString text = value.toVariant().toString();
        texts << (text.isEmpty() ? QStringLiteral("\"\"") : text);
    }
    const QString form = parameter.value(QLatin1String("form")).toString();
    if (texts.isEmpty()
        && parameter.value(QLatin1String("kind")).toString() == QLatin1String("boolean"))
        texts << QStringLiteral("true") << QStringLiteral("false");
    if (texts.isEmpty())
        return form;
    return form.isEmpty() ? texts.join(QLatin1Char('|'))
                          : texts.join(QLatin1Char('|')) + QStringLiteral("; ") + form;
}

// The parameters a plug-in's metadata describes, as a table; a sentence when
// it describes none.
QString parameterTable(const QJsonObject &metaData, const QString &tier)
{
    const QJsonArray parameters = metaData.value(QLatin1String("parameters")).toArray();
    if (parameters.isEmpty())
        return QStringLiteral("  ") + tr("Its plug-in describes no parameters.")
               + QLatin1Char('\n');
    QList<QStringList> rows{
        {tr("key"), tr("kind"), tr("values or form"), tr("default"), tr("meaning")}};
    for (const QJsonValue &value : parameters) {
        const QJsonObject parameter = value.toObject();
        QString key = parameter.value(QLatin1String("key")).toString();
        if (parameter.value(QLatin1String("perQuad")).toBool())
            key += QStringLiteral(" ") + tr("(per quad)");
        if (parameter.value(QLatin1String("optional")).toBool())
            key += QStringLiteral(" ") + tr("(optional)");
        rows << QStringList{key, parameter.value(QLatin1String("kind")).toString(),
                            valuesOrForm(parameter, tier),
                            parameter.value(QLatin1String("default")).toVariant().toString(),
                            parameter.value(QLatin1String("meaning")).toString()};
    }
    return table(rows, QStringLiteral("  "));
}

} // namespace

QStringList protocolPluginFiles()
{
    const QDir ipLib(QDir::cleanPath(QCoreApplication::applicationDirPath()
                                     + QStringLiteral("/../ipcore/SERDES_IP/IPlib")));
    QStringList paths;
    const QStringList folders = ipLib.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::NoSort);
    for (const QString &folder : folders) {
        const QDir dir(ipLib.absoluteFilePath(folder));
        const QStringList files
            = dir.entryList(QStringList(QLatin1String(IP_FILE_FILTER)), QDir::Files, QDir::NoSort);
        for (const QString &file : files)
            paths << dir.absoluteFilePath(file);
    }
    return paths;
}

QString protocolListing(const DEV::DeviceArg &device)
{
    QList<QStringList> rows;
    QString parameters;
    const QString tier = QLatin1String(tierDescription(tierOf(device.family)).tag);
    for (const QString &path : protocolPluginFiles()) {
        const QString file = QFileInfo(path).fileName();
        QPluginLoader loader(path);
        auto *package = qobject_cast<ProtocolPackage *>(loader.instance());
        if (!package) {
            rows << QStringList{file, QString(),
                                tr("not loaded: %1")
                                    .arg(loader.isLoaded() ? tr("it holds no protocol package")
                                                           : loader.errorString())};
            loader.unload();
            continue;
        }
        package->path = QFileInfo(path).absolutePath();
        const QJsonObject metaData = loader.metaData().value(QLatin1String("MetaData")).toObject();
        for (BaseProtocol *protocol : package->protocols()) {
            const std::unique_ptr<BaseProtocol> owned(protocol);
            rows << QStringList{protocol->name(), protocol->version(),
                                protocol->isSupported(device)
                                    ? tr("available")
                                    : tr("not available on the %1 family").arg(device.family)};
            parameters += QLatin1Char('\n') + tr("%1 parameters:").arg(protocol->name())
                          + QLatin1Char('\n') + parameterTable(metaData, tier);
        }
        loader.unload();
    }
    if (rows.isEmpty())
        return tr("No protocol is installed.") + QLatin1Char('\n');
    return tr("Protocols on %1 (%2, %3):").arg(device.id, device.name, device.family)
           + QLatin1Char('\n') + table(rows, QStringLiteral("  ")) + parameters;
}

} // namespace IPSERDESIP
