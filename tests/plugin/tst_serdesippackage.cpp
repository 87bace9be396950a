// SPDX-License-Identifier: MIT
//
// libSERDES_IP.so as the generator meets it: loaded from the installed tree,
// cast to the package interface, asked for its core.

#include "plugin/serdesip.h"
#include "plugin/serdesipconstants.h"

#include <ipcore/ippackage.h>

#include <QFile>
#include <QPluginLoader>
#include <QTemporaryDir>
#include <QtTest>

class tst_SerdesIpPackage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void loadsFromTree();
    void ipCores_data();
    void ipCores();

private:
    QList<IPCore::BaseIPCore *> coresFor(const QByteArray &description);

    QPluginLoader m_loader;
    IPCore::IPPackage *m_package = nullptr;
    QTemporaryDir m_tmp;
};

void tst_SerdesIpPackage::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QVERIFY(m_tmp.isValid());
    m_loader.setFileName(QStringLiteral(SERDES_STAGE_DIR "/ipcore/SERDES_IP/libSERDES_IP.so"));
    QObject *root = m_loader.instance();
    QVERIFY2(root, qPrintable(m_loader.errorString()));
    m_package = qobject_cast<IPCore::IPPackage *>(root);
    QVERIFY(m_package);
}

void tst_SerdesIpPackage::cleanupTestCase()
{
    m_loader.unload();
}

void tst_SerdesIpPackage::loadsFromTree()
{
    QCOMPARE(m_loader.metaData().value("IID").toString(),
             QStringLiteral("com.tarvexchip.plugins.IPPackage/1.0"));
    QVERIFY(!m_package->qt_metacast("com.tarvexchip.plugins.ProtocolPackage/1.0"));

    for (const char *image : {"exclamation", "module", "zoom_in", "zoom_out"}) {
        QFile file(QStringLiteral("://image/%1.png").arg(QLatin1String(image)));
        QVERIFY2(file.open(QIODevice::ReadOnly), image);
        QCOMPARE(file.read(4), QByteArray("\x89PNG"));
    }

    // The description installed beside the library.
    m_package->packagePath = QStringLiteral(SERDES_STAGE_DIR "/ipcore/SERDES_IP");
    const QList<IPCore::BaseIPCore *> cores = m_package->ipCores();
    QCOMPARE(cores.size(), 1);
    QCOMPARE(cores.first()->id(), QStringLiteral("SERDES_IP"));
    QCOMPARE(cores.first()->name(), QStringLiteral("SerDes"));
    QCOMPARE(cores.first()->version(), QStringLiteral("1.2"));
    QCOMPARE(cores.first()->summaryFile(), QStringLiteral("serdes_summary.html"));
    qDeleteAll(cores);
}

QList<IPCore::BaseIPCore *> tst_SerdesIpPackage::coresFor(const QByteArray &description)
{
    const QString spec = m_tmp.filePath(QStringLiteral("serdesip.ipspec"));
    QFile file(spec);
    if (!file.open(QIODevice::WriteOnly) || file.write(description) != description.size())
        return {};
    file.close();
    m_package->packagePath = m_tmp.path();
    return m_package->ipCores();
}

void tst_SerdesIpPackage::ipCores_data()
{
    QTest::addColumn<QByteArray>("description");
    QTest::addColumn<int>("cores");

    const QByteArray full = "[General]\nipcore.id=SERDES_IP\nipcore.name=SerDes\n"
                            "ipcore.category=Interface, Transceiver\n"
                            "ipcore.device.supported=RK9C-880D, RK9C-90F\n"
                            "ipcore.device.unsupported=RK9C-90F, RK9C-440D\n";
    QTest::newRow("complete") << full << 1;
    QTest::newRow("own data dir ignored") << full + "ipcore.dir.data=/elsewhere\n" << 1;
    QTest::newRow("incomplete") << QByteArray(full).replace("ipcore.id=SERDES_IP\n", "") << 0;
}

void tst_SerdesIpPackage::ipCores()
{
    QFETCH(QByteArray, description);
    QFETCH(int, cores);

    const QList<IPCore::BaseIPCore *> list = coresFor(description);
    QCOMPARE(list.size(), cores);
    if (cores == 0)
        return;
    auto *core = dynamic_cast<IPSERDESIP::serdesip *>(list.first());
    QVERIFY(core);
    QCOMPARE(core->version(), QString());
    QCOMPARE(core->category(), QStringList({"Interface", "Transceiver"}));
    QCOMPARE(core->info().value(IPCore::Info::KEY_DATADIRECTORY).toString(),
             m_tmp.path() + QStringLiteral("/data"));
    // A family on both lists is refused; one on neither, too.
    DEV::DeviceArg device;
    device.id = QStringLiteral("D");
    for (const char *family : {"RK9C-880D", "RK9C-90F", "RK9C-370D"}) {
        device.family = QLatin1String(family);
        QCOMPARE(core->isSupported(device), device.family == QLatin1String("RK9C-880D"));
    }
    qDeleteAll(list);
}

QTEST_GUILESS_MAIN(tst_SerdesIpPackage)
#include "tst_serdesippackage.moc"
