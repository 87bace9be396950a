// SPDX-License-Identifier: MIT
//
// The protocol chooser: its folders and their order, greyed rows, the
// registry lookups, and the popup that a folder or a greyed row keeps open.

#include "protocol/baseprotocol.h"
#include "protocol/m_combobox.h"
#include "protocol/m_treecomboboxwidget.h"
#include "protocol/protocolpackage.h"

#include <QHeaderView>
#include <QLocale>
#include <QPluginLoader>
#include <QtTest>

using namespace IPSERDESIP;
using Tree = M_TreeComboBoxWidget;

namespace {

// A protocol that only names itself and counts how often it is asked about
// a device.
class NamedProtocol : public BaseProtocol
{
public:
    NamedProtocol(const QString &name, const QStringList &category, bool supported = true,
                  const QString &id = QString())
        : m_name(name)
        , m_id(id.isEmpty() ? name : id)
        , m_category(category)
        , m_supported(supported)
    {}

    QMap<QString, QVariant> create(const QString &, const DEV::DeviceArg &) override { return {}; }
    QMap<QString, QVariant> edit(const QMap<QString, QVariant> &) override { return {}; }
    Message *createMessage(const QMap<QString, QVariant> &) override { return nullptr; }
    bool generate(const QMap<QString, QVariant> &, QStringList &, QStringList &, QStringList &,
                  QString &, bool) override
    {
        return false;
    }
    bool validate(const QMap<QString, QVariant> &, QStringList &) const override { return true; }
    QString id() const override { return m_id; }
    QString name() const override { return m_name; }
    QStringList category() const override { return m_category; }
    QString summaryFile() const override { return QString(); }
    bool isSupported(const DEV::DeviceArg &) const override
    {
        ++asked;
        return m_supported;
    }

    mutable int asked = 0;

private:
    QString m_name, m_id;
    QStringList m_category;
    bool m_supported;
};

DEV::DeviceArg device(const QString &id = QStringLiteral("RK9C880D-FF1156-2"))
{
    DEV::DeviceArg d;
    d.id = id;
    d.family = QStringLiteral("RK9C-880D");
    d.name = QStringLiteral("RK9C880D");
    return d;
}

// Fills a tree from rows "P name cat/cat" (a protocol; "P- ..." one the
// device cannot run) or "H name cat/cat" (a help-only row); "_" in a name
// stands for a blank.
void fill(Tree &tree, const QStringList &rows)
{
    for (const QString &row : rows) {
        const QStringList f = row.split(QLatin1Char(' '));
        const QString name = QString(f.at(1)).replace(QLatin1Char('_'), QLatin1Char(' '));
        const QStringList category = f.value(2).split(QLatin1Char('/'), Qt::SkipEmptyParts);
        if (f.at(0).startsWith(QLatin1Char('P')))
            tree.insertIPCoreList(new NamedProtocol(name, category, f.at(0) == QLatin1String("P")),
                                  device());
        else
            tree.insertIPCore(name, category, "1.0", name + ".html");
    }
}

// The tree as "F:folder{...} P:protocol H:help", children in their order.
QString dump(const QTreeWidgetItem *parent)
{
    QStringList parts;
    for (int i = 0; i < parent->childCount(); ++i) {
        const QTreeWidgetItem *child = parent->child(i);
        const char kind = child->type() == Tree::FolderItem     ? 'F'
                          : child->type() == Tree::ProtocolItem ? 'P'
                                                                : 'H';
        parts << QStringLiteral("%1:%2").arg(kind).arg(child->text(0));
        if (child->childCount())
            parts.last() += QLatin1Char('{') + dump(child) + QLatin1Char('}');
    }
    return parts.join(QLatin1Char(' '));
}

QTreeWidgetItem *find(Tree &tree, const QString &text)
{
    return tree.findItems(text, Qt::MatchExactly | Qt::MatchRecursive).value(0);
}

bool isGrey(const QTreeWidgetItem *item)
{
    const QBrush grey(Qt::gray, Qt::SolidPattern);
    return item->foreground(0) == grey && item->foreground(1) == grey;
}

} // namespace

class tst_ProtocolChooser : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void order_data();
    void order();
    void rows_data();
    void rows();
    void lookups();
    void testProtocol();
    void popup_data();
    void popup();
    void pressOutsideRows();
};

void tst_ProtocolChooser::order_data()
{
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<QString>("tree");

    QTest::newRow("folders, protocols, help rows")
        << QStringList{"H XAUI Serdes/Telecommunication/Ethernet",
                       "P Aurora Serdes",
                       "H eDP_TX Serdes/Video",
                       "P eDP Serdes/Video",
                       "H eDP_RX Serdes/Video",
                       "P- SATA Serdes"}
        << "F:Telecommunication{F:Ethernet{H:XAUI}} F:Video{P:eDP H:eDP RX H:eDP TX} "
           "P:Aurora P:SATA";
    QTest::newRow("code values: capitals first, a prefix first")
        << QStringList{"P eDP_RX Serdes", "P eDP Serdes", "P XAUI Serdes", "P aurora Serdes",
                       "P Aurora Serdes"}
        << "P:Aurora P:XAUI P:aurora P:eDP P:eDP RX";
    QTest::newRow("folder before protocol of the same name")
        << QStringList{"P Video Serdes", "P DisplayPort Serdes/Video"}
        << "F:Video{P:DisplayPort} P:Video";
    QTest::newRow("one folder for all its protocols")
        << QStringList{"P B Serdes/Ethernet", "H C Serdes/Ethernet", "P A Serdes/Ethernet/10G",
                       "P D Serdes/Ethernet"}
        << "F:Ethernet{F:10G{P:A} P:B P:D H:C}";
    QTest::newRow("top category hidden anywhere")
        << QStringList{"P Deep A/Serdes/B", "P Top Serdes", "P Bare"}
        << "F:A{F:B{P:Deep}} P:Bare P:Top";
}

void tst_ProtocolChooser::order()
{
    QFETCH(QStringList, rows);
    QFETCH(QString, tree);

    Tree chooser;
    fill(chooser, rows);
    QCOMPARE(dump(chooser.invisibleRootItem()), tree);
    QCOMPARE(chooser.m_items.size(), rows.size());
}

void tst_ProtocolChooser::rows_data()
{
    QTest::addColumn<QString>("deviceId");
    QTest::addColumn<bool>("supported");
    QTest::addColumn<bool>("pickable");
    QTest::addColumn<int>("asked");
    // A greyed row's tooltip.
    QTest::addColumn<QString>("why");

    QTest::newRow("supported") << "RK9C880D-FF1156-2" << true << true << 1 << QString();
    QTest::newRow("not supported") << "RK9C880D-FF1156-2" << false << false << 1
                                   << "PCIe is not supported on the RK9C-880D family of RK9C880D.";
    QTest::newRow("no device: not asked")
        << "" << true << false << 0 << "No device is chosen, so no protocol can be placed.";
}

void tst_ProtocolChooser::rows()
{
    QFETCH(QString, deviceId);
    QFETCH(bool, supported);
    QFETCH(bool, pickable);
    QFETCH(int, asked);
    QFETCH(QString, why);

    Tree chooser;
    auto *protocol = new NamedProtocol("PCIe", {"Serdes", "Bus"}, supported);
    chooser.insertIPCoreList(protocol, device(deviceId));
    chooser.insertIPCore("XAUI", {"Serdes", "Bus"}, "1.0", "xaui.html");
    chooser.insertUnloaded("libbroken.so", "undefined symbol: f");

    QTreeWidgetItem *row = find(chooser, "PCIe");
    QCOMPARE(protocol->asked, asked);
    QCOMPARE(row->data(0, Tree::PickableRole), QVariant(pickable));
    QCOMPARE(isGrey(row), !pickable);
    QCOMPARE(row->toolTip(0), why);
    QCOMPARE(row->text(1), QString()); // the default version
    QTreeWidgetItem *help = find(chooser, "XAUI");
    QCOMPARE(help->data(0, Tree::PickableRole), QVariant(false));
    QVERIFY(isGrey(help));
    QCOMPARE(help->data(0, Tree::ProtocolRole), QVariant("xaui.html"));
    QCOMPARE(help->text(1), QString("1.0"));
    QCOMPARE(help->toolTip(0),
             QString("The plug-in of XAUI is not installed: only its help page can be read."));
    QTreeWidgetItem *broken = find(chooser, "libbroken.so");
    QVERIFY(isGrey(broken) && !broken->data(0, Tree::PickableRole).toBool());
    QCOMPARE(broken->toolTip(0),
             QString("The plug-in libbroken.so could not be loaded: undefined symbol: f"));
    QTreeWidgetItem *folder = find(chooser, "Bus");
    QVERIFY(!folder->data(0, Tree::ProtocolRole).isValid());
    QVERIFY(!isGrey(folder));
}

void tst_ProtocolChooser::lookups()
{
    Tree chooser;
    auto *first = new NamedProtocol("Ethernet", {"Serdes"}, true, "ETH_A");
    auto *second = new NamedProtocol("Ethernet", {"Serdes"}, true, "ETH_B");
    chooser.insertIPCoreList(first, device());
    chooser.insertIPCoreList(second, device());
    fill(chooser, {"H XAUI Serdes"});

    QCOMPARE(chooser.getIPCoreByName("Ethernet"), first);
    QCOMPARE(chooser.getIPCoreById("ETH_B"), second);
    QCOMPARE(chooser.getIPCoreByName("ethernet"), nullptr);
    QCOMPARE(chooser.getIPCoreByName("XAUI"), nullptr);
    QCOMPARE(chooser.getIPCoreById("Ethernet"), nullptr);
    // Equal names keep the order in which they came.
    const QTreeWidgetItem *top = chooser.invisibleRootItem();
    QCOMPARE(top->child(0)->data(0, Tree::ProtocolRole).value<BaseProtocol *>(), first);
    QCOMPARE(top->child(1)->data(0, Tree::ProtocolRole).value<BaseProtocol *>(), second);
}

// The test protocol plug-in, loaded as the page loads one; the tree deletes
// its protocols before the plug-in is unloaded.
void tst_ProtocolChooser::testProtocol()
{
    QPluginLoader loader(QStringLiteral(SERDES_TEST_PROTOCOL));
    auto *package = qobject_cast<ProtocolPackage *>(loader.instance());
    QVERIFY2(package, qPrintable(loader.errorString()));
    {
        Tree chooser;
        chooser.insertIPCoreList(package->protocols().value(0), device());
        QCOMPARE(dump(chooser.invisibleRootItem()), QString("F:Test{F:Rows{P:TestProtocol}}"));
        const QTreeWidgetItem *row = find(chooser, "TestProtocol");
        QCOMPARE(row->text(1), QString("0.1"));
        QCOMPARE(row->data(0, Tree::PickableRole), QVariant(true));
    }
    QVERIFY(loader.unload());
}

void tst_ProtocolChooser::popup_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<bool>("closes");

    QTest::newRow("supported protocol") << "PCIe" << true;
    QTest::newRow("unsupported protocol") << "SATA" << false;
    QTest::newRow("help-only row") << "XAUI" << false;
    QTest::newRow("folder") << "Bus" << false;
}

// The chooser as the page sets it up: the tree is the box's view and model.
void tst_ProtocolChooser::popup()
{
    QFETCH(QString, row);
    QFETCH(bool, closes);

    M_ComboBox box;
    auto *chooser = new Tree;
    fill(*chooser, {"P PCIe Serdes/Bus", "P- SATA Serdes", "H XAUI Serdes"});
    chooser->expandAll();
    chooser->header()->hide();
    box.setModel(chooser->model());
    box.setView(chooser);
    connect(chooser, &Tree::mousepress, &box, &M_ComboBox::onmousepress);
    QSignalSpy presses(chooser, &Tree::mousepress);
    box.setMinimumWidth(300);
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));

    box.showPopup();
    QVERIFY(chooser->isVisible());
    // The box ignores a release that comes too soon after it opened.
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    QWidget *viewport = chooser->viewport();
    QTreeWidgetItem *item = find(*chooser, row);
    const bool expanded = item->isExpanded();
    const QPoint at(viewport->width() / 2, chooser->visualItemRect(item).center().y());
    QMouseEvent hover(QEvent::MouseMove, at, viewport->mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                      Qt::NoModifier);
    QApplication::sendEvent(viewport, &hover);
    QTest::mousePress(viewport, Qt::LeftButton, {}, at);
    QCOMPARE(presses.count(), 1);
    QCOMPARE(presses.first().first().toBool(), closes);
    QCOMPARE(item->isExpanded() != expanded, row == "Bus");
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, at);
    QCOMPARE(chooser->isVisible(), !closes);

    // A swallowed hide is spent: the next one closes.
    QCOMPARE(box.m_hide, true);
    box.hidePopup();
    QVERIFY(!chooser->isVisible());
}

void tst_ProtocolChooser::pressOutsideRows()
{
    Tree chooser;
    fill(chooser, {"P PCIe Serdes"});
    chooser.resize(300, 200);
    chooser.show();
    QVERIFY(QTest::qWaitForWindowExposed(&chooser));
    QSignalSpy presses(&chooser, &Tree::mousepress);
    QTest::mousePress(chooser.viewport(), Qt::LeftButton, {}, QPoint(150, 150));
    QCOMPARE(presses.count(), 1);
    QCOMPARE(presses.first().first().toBool(), false);
}

QTEST_MAIN(tst_ProtocolChooser)
#include "tst_protocolchooser.moc"
