// SPDX-License-Identifier: MIT
#include "page/serdesipdlg.h"

#include "model/mux.h"
#include "model/pll.h"
#include "model/serdes.h"
#include "model/serdesip_common.h"
#include "page/configurationreport.h"
#include "page/refusalreport.h"
#include "plugin/serdesipconstants.h"
#include "protocol/baseprotocol.h"
#include "protocol/m_treecomboboxwidget.h"
#include "protocol/message.h"
#include "protocol/protocolcatalogue.h"
#include "protocol/protocolpackage.h"
#include "reconfig/reconfiguration.h"
#include "tiers/tier.h"
#include "translate/generator.h"
#include "translate/parser.h"
#include "views/clockschematicview.h"
#include "views/serdesview.h"

#include <core/editormanager.h>
#include <ipcore/ipcorefile.h>
#include <ipcore/ipcoremessages.h>
#include <ipcore/ipcoreproject.h>
#include <ipcore/tvmodgenproxy.h>
#include <te/flowmanager.h>
#include <te/taskengine.h>
#include <utils/messages.h>

#include "ui_microsysipgendlg.h"
#include "ui_serdesipdlg.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QJsonDocument>
#include <QMessageBox>
#include <QPluginLoader>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSettings>
#include <QStyleFactory>
#include <QTemporaryFile>
#include <QVBoxLayout>
#include <QWebPage>
#include <QWebView>
#include <QtDebug>

namespace IPSERDESIP {

namespace {

// Keys under which protocols leave per-instance flags in the model's store;
// each ends in the instance's module name.
const char *const SIDE_KEY_PREFIXES[] = {"jesd204bCheckDRP_", SRIOHAVE_X2_FALSE, SRIOHAVE_X2_TRUE};

// Whether `key` is `prefix` followed by `module`, the way the store's
// families are recognised: every occurrence of the prefix is taken out.
bool isSideKey(const QString &key, const char *prefix, const QString &module)
{
    const QLatin1String p(prefix);
    return key.startsWith(p) && QString(key).remove(p) == module;
}

// Saved with a cancelled edit's side-keys: nothing was there to restore.
const int NO_DRP_SAVED = 99;

struct HelpRow
{
    const char *name;
    const char *categories[3];
    const char *version;
    const char *helpFile;
};

// Protocols the chooser lists for their help pages alone.
const HelpRow HELP_ONLY_ROWS[] = {
    {"XAUI", {"Serdes", "Telecommunication", "Ethernet"}, "1.0", "xaui.html"},
    {"eDP RX", {"Serdes", "Video", nullptr}, "1.0", "edp_rx_information.html"},
    {"eDP TX", {"Serdes", "Video", nullptr}, "1.0", "edp_tx_information.html"},
};

// A value as a configuration file holds it, read as the page reads such a
// file: "a, b" is a list of two, "\"a,b\"" one text with a comma in it.
QVariant settingsValue(const QString &text)
{
    QTemporaryFile file;
    if (!file.open())
        return text;
    file.write("[v]\nv=" + text.toUtf8() + '\n');
    file.close();
    QSettings settings(file.fileName(), QSettings::IniFormat);
    // Escapes as the page writes them, and text typed as it is.
    settings.setIniCodec("UTF-8");
    return settings.value(QStringLiteral("v/v"));
}

QMap<QString, QVariant> readGroup(QSettings &settings, const QString &group)
{
    QMap<QString, QVariant> entries;
    settings.beginGroup(group);
    const QStringList keys = settings.childKeys();
    for (const QString &key : keys)
        entries.insert(key, settings.value(key));
    settings.endGroup();
    return entries;
}

// Why `value`, read from a configuration file or typed, cannot name what the
// core writes into its folder, or empty when it can. A file name becomes part
// of a path there; a module name becomes a Verilog or VHDL identifier.
QString nameProblem(const QString &value, bool module)
{
    static const QRegularExpression identifier(QStringLiteral("^[A-Za-z][A-Za-z0-9_]*$"));
    if (value.isEmpty())
        return serdesipdlg::tr("is empty");
    if (value.contains(QLatin1Char('/')) || value.contains(QLatin1Char('\\')))
        return serdesipdlg::tr("holds a path separator");
    if (value == QLatin1String(".") || value == QLatin1String(".."))
        return serdesipdlg::tr("names a folder, not a file");
    if (module && !identifier.match(value).hasMatch())
        return serdesipdlg::tr("is no Verilog or VHDL identifier");
    if (module && IPCore::isReservedWord(value))
        return serdesipdlg::tr("is a reserved word of Verilog or VHDL");
    return QString();
}

// Whether no line that `msg` names is held already: a row of a whole lane
// names both of its lines. One line has one owner, whatever a file says.
bool linesFree(serdes &model, const Message &msg)
{
    for (const QString &name : msg.lanes) {
        LANE *lane = model.FormStringToLanePtr(name);
        // A row that names no lane is the model's to refuse, in its words.
        if (!lane)
            continue;
        const bool tx = name.contains(QLatin1String("TX"));
        const bool rx = name.contains(QLatin1String("RX"));
        if ((!rx && lane->tx->count != 0) || (!tx && lane->rx->count != 0))
            return false;
    }
    return true;
}

} // namespace

serdesipdlg::serdesipdlg(const QMap<QString, QVariant> &info, QWidget *parent)
    : MicroSysIPGenDlg(parent)
    , m_info(info)
    , m_ui(new Ui_Serdesipdlg)
{
    m_info.detach();
    // No model of an earlier dialog may leak into this one.
    serdes::destory();
    m_tree = new M_TreeComboBoxWidget(this);
    auto *page = new QWidget;
    m_ui->setupUi(page);
    uiAddWidget(page);
    m_view = new serdesView(this);
    auto *layout = new QVBoxLayout;
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    m_ui->widget->setLayout(layout);
}

serdesipdlg::~serdesipdlg()
{
    delete m_schematic;
    m_schematic = nullptr;
    delete m_reconfig;
    m_reconfig = nullptr;
    delete m_ui;
    // The tree owns the chooser's set of protocols.
    delete m_tree;
    m_tree = nullptr;
    qDeleteAll(m_protocols);
    m_protocols.clear();
    // Only now that every protocol object is gone may their code go.
    for (QPluginLoader *loader : qAsConst(m_loaders)) {
        loader->unload();
        delete loader;
    }
    m_loaders.clear();
    qDeleteAll(m_messages);
    m_messages.clear();
    parser::destory();
    serdes::destory();
}

void serdesipdlg::dialogDidPrepare()
{
    serdes::instance()->initilize(device().family);
    parser::instance()->initialize(device().family);
    initTree();
    m_view->setDevice(device());
    m_view->initDisplayView();

    m_tree->expandAll();
    m_tree->header()->hide();
    M_ComboBox *combo = m_ui->comboBoxTree;
    if (QStyle *style = QStyleFactory::create(QStringLiteral("windows"))) {
        style->setParent(combo);
        combo->setStyle(style);
    }
    combo->setMaxVisibleItems(15);
    combo->setModel(m_tree->model());
    combo->setView(m_tree);

    connect(m_tree, &M_TreeComboBoxWidget::mousepress, combo, &M_ComboBox::onmousepress);
    connect(m_ui->pushButtonCreate, &QPushButton::clicked, this,
            &serdesipdlg::onCreateButtonClidked);
    connect(m_tree, &QTreeWidget::itemSelectionChanged, this, &serdesipdlg::onSelectIP);
    // The frame already passes the pane's links on to onLinkClicked (the view
    // forwards its page's signal); a second connection would open each link
    // twice.
    m_webView->page()->setLinkDelegationPolicy(QWebPage::DelegateExternalLinks);

    // The row shown first: the first protocol of the second folder of the
    // tree's first folder. Positions that do not exist give an invalid index,
    // and then nothing is preselected.
    QAbstractItemModel *model = m_tree->model();
    QModelIndex row = model->index(0, 0);
    row = model->index(1, 0, row);
    row = model->index(0, 0, row);
    row = model->index(0, 0, row);
    combo->setRootModelIndex(row.parent());
    combo->setModelColumn(row.column() < 0 ? 0 : row.column());
    combo->setCurrentIndex(row.row());
    combo->setRootModelIndex(QModelIndex());
    m_tree->setCurrentIndex(row);

    connect(m_view, &serdesView::sigEditItem, this, &serdesipdlg::editIP);
    connect(m_view, &serdesView::sigDeleteItem, this, &serdesipdlg::deleteIP);
    Ui_MicroSysIPGenDlg *frame = MicroSysIPGenDlg::m_ui;
    connect(frame->buttonViewClock, &QPushButton::clicked, this,
            &serdesipdlg::showClockSchematic);
    connect(frame->pushButtonReconfiguration, &QPushButton::clicked, this,
            &serdesipdlg::showReconfiguration);
}

void serdesipdlg::initTree()
{
    const QStringList paths = protocolPluginFiles();
    for (const QString &path : qAsConst(paths)) {
        auto *loader = new QPluginLoader(path);
        if (!loader->load()) {
            qCritical() << "Can not load IP file: " << path;
            qCritical() << "Can not load IP file: " << loader->errorString();
            m_tree->insertUnloaded(QFileInfo(path).fileName(), loader->errorString());
            delete loader;
            continue;
        }
        auto *package = qobject_cast<ProtocolPackage *>(loader->instance());
        if (!package) {
            qCritical() << "No IP Pakcgae entry found in file: " << path;
            m_tree->insertUnloaded(QFileInfo(path).fileName(), tr("it holds no protocol package."));
            loader->unload();
            delete loader;
            continue;
        }
        package->path = QFileInfo(path).absolutePath();
        m_protocols << package->protocols();
        m_loaders << loader;
        // A second set for the chooser, which owns it.
        const QList<BaseProtocol *> chooserSet = package->protocols();
        for (BaseProtocol *protocol : chooserSet)
            m_tree->insertIPCoreList(protocol, device());
    }

    for (const HelpRow &row : HELP_ONLY_ROWS) {
        QStringList categories;
        for (const char *category : row.categories) {
            if (category)
                categories << QLatin1String(category);
        }
        m_tree->insertIPCore(QLatin1String(row.name), categories, QLatin1String(row.version),
                             QLatin1String(row.helpFile));
    }
}

void serdesipdlg::onCreateButtonClidked()
{
    createIP(m_ui->comboBoxTree->currentText());
}

void serdesipdlg::createIP(QString name)
{
    BaseProtocol *proto = m_tree->getIPCoreByName(name);
    if (!proto || !proto->isSupported(device()))
        return;
    const QMap<QString, QVariant> args = proto->create(createPath(), device());
    if (args.isEmpty())
        return;
    Message *msg = proto->createMessage(args);
    if (!msg)
        return;
    if (addIP(msg, proto, args))
        m_changed = true;
}

double serdesipdlg::chooseHue() const
{
    // The counter rises with every message visited, not with every clash,
    // so that a clash jumps further along the sequence of hues.
    int n = m_messages.size();
    double candidate = getH(n);
    for (bool clash = true; clash;) {
        clash = false;
        for (const Message *msg : m_messages) {
            ++n;
            if (msg->h == candidate) {
                candidate = getH(n);
                clash = true;
                break;
            }
        }
    }
    return candidate;
}

void serdesipdlg::showModelError(const QString &err)
{
    Utils::showMessage(this, QMessageBox::Critical, tr("Error"), err);
}

bool serdesipdlg::addIP(Message *msg, BaseProtocol *proto, const QMap<QString, QVariant> &args)
{
    QString reason;
    if (placeIP(msg, proto, args, reason))
        return true;
    showModelError(reason);
    return false;
}

bool serdesipdlg::placeIP(Message *msg, BaseProtocol *proto, const QMap<QString, QVariant> &args,
                          QString &reason)
{
    const QString name = msg->name;
    bool taken = m_messages.contains(name);
    for (const UnrestoredInstance &kept : qAsConst(m_unrestored))
        taken = taken || kept.group.section(QLatin1String(NAME_SPLIT), -1) == name;
    if (taken) {
        reason = tr("The name %1 is taken by another instance.").arg(name);
        delete msg;
        return false;
    }
    msg->h = chooseHue();
    serdes *model = serdes::instance();
    QString err;
    const bool free = linesFree(*model, *msg);
    if (free && model->addItem(msg, err)) {
        m_owners.insert(name, proto);
        m_args.insert(name, args);
        m_messages.insert(name, msg);
        m_view->addItem(msg);
        refreshSchematic();
        return true;
    }
    // The model's own words, then what stands in the way of each row.
    QStringList words;
    if (!err.isEmpty())
        words << err;
    words << explainRefusal(model, *msg, m_messages);
    if (words.isEmpty())
        words << tr("Its lanes are held by another instance.");
    reason = words.join(QLatin1Char('\n'));
    // Whatever the refused request reserved is given back, and what other
    // instances hold stays as it was.
    if (free)
        model->releaseLastRequest();
    delete msg;
    return false;
}

void serdesipdlg::restoreIP(const QString &group, BaseProtocol *proto,
                            const QMap<QString, QVariant> &entries, const QString &name, bool check)
{
    QStringList problems;
    if (check && !proto->validate(entries, problems)) {
        if (problems.isEmpty())
            problems << tr("%1 cannot read the instance's settings.").arg(proto->name());
        keepUnrestored(group, entries, problems.join(QLatin1Char('\n')));
        return;
    }
    Message *msg = proto->createMessage(entries);
    if (!msg) {
        keepUnrestored(group, entries,
                       tr("%1 cannot read the instance's settings.").arg(proto->name()));
        return;
    }
    if (!name.isEmpty())
        msg->name = name;
    QString reason;
    if (!placeIP(msg, proto, entries, reason))
        keepUnrestored(group, entries, reason);
}

void serdesipdlg::keepUnrestored(const QString &group, const QMap<QString, QVariant> &entries,
                                 const QString &reason)
{
    m_unrestored.append({group, entries, reason});
    // Its names stay taken, so that no new instance is given them.
    serdes *model = serdes::instance();
    const QString module = entries.value(QLatin1String(MODULE_NAME)).toString();
    const QString file = entries.value(QLatin1String(FILE_NAME)).toString();
    if (!module.isEmpty())
        model->moduleNames.append(module);
    if (!file.isEmpty())
        model->fileNames.append(file);
}

void serdesipdlg::showUnrestored()
{
    if (m_unrestored.isEmpty())
        return;
    QStringList lines;
    // One line a reason, each naming its instance, so that every problem of
    // every instance can be read, and found, on its own.
    for (const UnrestoredInstance &kept : qAsConst(m_unrestored)) {
        for (const QString &reason : kept.reason.split(QLatin1Char('\n')))
            lines << QStringLiteral("%1: %2").arg(kept.group, reason);
    }
    const QString what = m_unrestored.size() == 1
                             ? tr("One instance of this configuration could not be restored. It "
                                  "holds nothing on the device, and OK keeps it in the file as it "
                                  "was:")
                             : tr("%1 instances of this configuration could not be restored. They "
                                  "hold nothing on the device, and OK keeps them in the file as "
                                  "they were:")
                                   .arg(m_unrestored.size());
    Utils::showMessage(this, QMessageBox::Warning, tr("Warning"),
                       what + QStringLiteral("\n\n") + lines.join(QLatin1Char('\n')));
}

void serdesipdlg::reject()
{
    if (m_changed) {
        QMessageBox box(QMessageBox::Question, tr("SerDes"),
                        tr("Discard the changes to this SerDes core?"), QMessageBox::NoButton,
                        this);
        QPushButton *discard = box.addButton(QMessageBox::Discard);
        QPushButton *keep = box.addButton(tr("Keep Editing"), QMessageBox::RejectRole);
        box.setDefaultButton(keep);
        box.setEscapeButton(keep);
        box.exec();
        if (box.clickedButton() != discard)
            return;
    }
    MicroSysIPGenDlg::reject();
}

void serdesipdlg::editIP(QString name)
{
    if (!m_owners.contains(name))
        return;
    Message *msg = m_messages.value(name, nullptr);
    QString err;
    if (!serdes::instance()->deleteItem(msg, err)) {
        showModelError(err);
        return;
    }
    m_messages.remove(name);
    BaseProtocol *proto = m_owners.take(name);
    const QMap<QString, QVariant> oldArgs = m_args.take(name);
    m_view->deleteItem(msg);
    refreshSchematic();

    // The protocol's flags in the model's store go out with the instance and
    // come back only if the edit is cancelled.
    serdes *model = serdes::instance();
    const QString module = msg->module;
    int savedDrp = NO_DRP_SAVED;
    QString savedX2False;
    QString savedX2True;
    const QStringList keys = model->data.keys();
    for (const QString &key : keys) {
        if (isSideKey(key, SIDE_KEY_PREFIXES[0], module)) {
            savedDrp = model->getData(key).toInt();
            model->removeData(key);
        }
        if (isSideKey(key, SIDE_KEY_PREFIXES[1], module)) {
            savedX2False = model->getData(key).toString();
            model->removeData(key);
        }
        if (isSideKey(key, SIDE_KEY_PREFIXES[2], module)) {
            savedX2True = model->getData(key).toString();
            model->removeData(key);
        }
    }

    const QMap<QString, QVariant> newArgs = proto->edit(oldArgs);
    if (!newArgs.isEmpty()) {
        Message *edited = proto->createMessage(newArgs);
        if (edited && addIP(edited, proto, newArgs)) {
            m_changed = true;
            delete msg;
            return;
        }
    }
    // Cancelled or refused, the edit costs nothing: the instance comes back
    // as it was, flags included.
    if (savedDrp != NO_DRP_SAVED)
        model->setData(QLatin1String(SIDE_KEY_PREFIXES[0]) + module, savedDrp);
    if (!savedX2False.isEmpty())
        model->setData(QLatin1String(SIDE_KEY_PREFIXES[1]) + module, savedX2False);
    if (!savedX2True.isEmpty())
        model->setData(QLatin1String(SIDE_KEY_PREFIXES[2]) + module, savedX2True);
    const QString group = msg->type + QLatin1String(NAME_SPLIT) + name;
    if (!addIP(msg, proto, oldArgs))
        keepUnrestored(group, oldArgs, tr("It could not be placed again after an edit."));
}

void serdesipdlg::deleteIP(QString name)
{
    Message *msg = m_messages.value(name, nullptr);
    QString err;
    if (!serdes::instance()->deleteItem(msg, err)) {
        showModelError(err);
        return;
    }
    const QString module = msg->module;
    m_messages.remove(name);
    m_owners.remove(name);
    m_args.remove(name);
    m_view->deleteItem(msg);
    delete msg;
    m_changed = true;
    refreshSchematic();

    serdes *model = serdes::instance();
    const QStringList keys = model->data.keys();
    for (const QString &key : keys) {
        for (const char *prefix : SIDE_KEY_PREFIXES) {
            if (isSideKey(key, prefix, module))
                model->removeData(key);
        }
    }
}

void serdesipdlg::onSelectIP()
{
    QTreeWidgetItem *item = m_tree->currentItem();
    if (!item || !item->treeWidget() || !item->isSelected())
        return;
    const QVariant data = item->data(0, M_TreeComboBoxWidget::ProtocolRole);
    if (item->type() == M_TreeComboBoxWidget::ProtocolItem) {
        if (auto *proto = data.value<BaseProtocol *>())
            showIPView(proto);
    } else if (item->type() == M_TreeComboBoxWidget::HelpOnlyItem) {
        showIPView(data.toString());
    }
}

QList<QPair<QString, QString>> serdesipdlg::getConnectListFromToml()
{
    QList<QPair<QString, QString>> connections;
    const QMap<QString, QStringList> routes = serdes::instance()->allAccess();
    for (QStringList route : routes) {
        // The bridge joins its neighbours; it is no node of its own.
        route.removeOne(QLatin1String(MUX_Q0_TO_Q1));
        for (int k = 0; k + 1 < route.size(); ++k)
            connections << qMakePair(route.at(k + 1), route.at(k));
    }
    return connections;
}

QList<QPair<QString, QString>> serdesipdlg::getConnectList()
{
    const QString toml = QStringLiteral("serdes_tmp.toml");
    generateToml(toml);
    QList<QPair<QString, QString>> connections;
    {
        // TOML sections read as INI groups: "q0.ln1/enable" is the key
        // "enable" of section "q0.ln1". Values are compared as written.
        QSettings settings(toml, QSettings::IniFormat);
        const auto text = [&settings](const QString &key, const char *fallback = "") {
            return settings.value(key, QLatin1String(fallback)).toString();
        };
        for (int q = 0; q < 2; ++q) {
            if (text(QStringLiteral("q%1/enable").arg(q), "false") != QLatin1String("true"))
                continue;
            for (int n = 0; n < 4; ++n) {
                const QString section = QStringLiteral("q%1.ln%2/").arg(q).arg(n);
                if (text(section + QStringLiteral("enable")) != QLatin1String("true"))
                    continue;
                const QString lane = QStringLiteral("Q%1_LANE%2_").arg(q).arg(n);
                const QString quad = QStringLiteral("Q%1_").arg(q);
                switch (settings.value(section + QStringLiteral("pcs_tx_clk_src"), 0).toInt()) {
                case 0:
                    connections << qMakePair(QString(quad + QStringLiteral("CPLL")
                                                     + QString::number(n)),
                                             QString(lane + QStringLiteral("TX")));
                    break;
                case 1:
                    connections << qMakePair(QString(quad + QStringLiteral("QPLL0")),
                                             QString(lane + QStringLiteral("TX")));
                    break;
                case 2:
                    connections << qMakePair(QString(quad + QStringLiteral("QPLL1")),
                                             QString(lane + QStringLiteral("TX")));
                    break;
                default:
                    break;
                }
                const QString cdr = text(section + QStringLiteral("cdr_calib_clk_src"));
                if (cdr == QLatin1String("REFMUX0") || cdr == QLatin1String("REFMUX1")) {
                    connections << qMakePair(QString(quad + QStringLiteral("MUX") + cdr.right(1)),
                                             QString(lane + QStringLiteral("RX")));
                }
            }
        }
    }
    serdes *model = serdes::instance();
    const QMap<QString, Instance *> elements = model->allInstance();
    for (auto it = elements.cbegin(); it != elements.cend(); ++it) {
        if (auto *pll = dynamic_cast<PLL *>(it.value())) {
            if (model->checkPllEnable(it.key()) && pll->Mux())
                connections << qMakePair(pll->Mux()->point(), it.key());
        } else if (auto *mux = dynamic_cast<MUX *>(it.value())) {
            if (mux->enable())
                connections << qMakePair(mux->point(), it.key());
        }
    }
    QFile::remove(toml);
    return connections;
}

void serdesipdlg::showClockSchematic()
{
    if (!m_schematic)
        m_schematic = new clockSchematicView(device(), this);
    m_schematic->proposeSaveDirectory(createPath());
    m_schematic->setConnectionList(getConnectListFromToml());
    m_schematic->setLabels(schematicLabels(m_messages));
    m_schematic->updateView();
    m_schematic->setVisible(true);
}

void serdesipdlg::refreshSchematic()
{
    if (m_schematic && m_schematic->isVisible())
        showClockSchematic();
}

void serdesipdlg::showReconfiguration()
{
    if (!m_reconfig) {
        m_reconfig = new reconfiguration(this);
        m_reconfig->setDevice(device());
    }
    // The export is offered beside the core's other outputs.
    m_reconfig->setExportDirectory(createPath());
    m_reconfig->dialogDidPrepare();
    m_reconfig->setVisible(true);
}

bool serdesipdlg::writeReport(const QString &path)
{
    const QJsonObject report = configurationReport(device(), moduleName(), fileName(), m_messages,
                                                   serdes::instance()->allAccess());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)
        || file.write(QJsonDocument(report).toJson()) < 0 || !file.commit()) {
        qCritical("%s", qPrintable(tr("Cannot write the report \"%1\": %2")
                                       .arg(QDir::toNativeSeparators(path), file.errorString())));
        return false;
    }
    return true;
}

bool serdesipdlg::writeSchematic(const QString &path)
{
    QString error;
    if (!clockSchematicView::saveSchematic(device(), getConnectListFromToml(),
                                           schematicLabels(m_messages), path, error)) {
        qCritical("%s", qPrintable(error));
        return false;
    }
    return true;
}

bool serdesipdlg::setCoreNames(const QString &directory, const QString &file, const QString &module,
                               const QString &language)
{
    QStringList problems;
    const QString fileWhy = nameProblem(file, false);
    if (!fileWhy.isEmpty())
        problems << tr("The core's file name \"%1\" %2").arg(file, fileWhy);
    const QString moduleWhy = module.isEmpty() ? QString() : nameProblem(module, true);
    if (!moduleWhy.isEmpty())
        problems << tr("The core's module name \"%1\" %2").arg(module, moduleWhy);
    const int languageIndex
        = language.isEmpty()                                                     ? uiLanguageIndex()
          : language.compare(QLatin1String("verilog"), Qt::CaseInsensitive) == 0 ? 0
          : language.compare(QLatin1String("vhdl"), Qt::CaseInsensitive) == 0    ? 1
                                                                                 : -1;
    if (languageIndex < 0)
        problems << tr("The language \"%1\" is neither verilog nor vhdl.").arg(language);
    if (!problems.isEmpty()) {
        qCritical("%s", qPrintable(problems.join(QLatin1Char('\n'))));
        return false;
    }
    uiSetCreateIn(QDir::toNativeSeparators(directory));
    setFileName(file);
    if (!module.isEmpty())
        setModuleName(module);
    uiSetLanguageIndex(languageIndex);
    return true;
}

bool serdesipdlg::addInstance(const QString &protocol, const QStringList &settings,
                              const QString &name)
{
    const auto refuse = [&protocol](const QStringList &problems) {
        qCritical("%s", qPrintable(tr("No instance of %1 was added:").arg(protocol)
                                   + QLatin1Char('\n') + problems.join(QLatin1Char('\n'))));
        return false;
    };
    BaseProtocol *proto = m_tree->getIPCoreByName(protocol);
    if (!proto) {
        QStringList installed;
        for (const BaseProtocol *known : qAsConst(m_tree->m_cores))
            installed << known->name();
        return refuse({tr("No protocol of that name is installed; there are %1.")
                           .arg(installed.join(QStringLiteral(", ")))});
    }
    if (!proto->isSupported(device()))
        return refuse({tr("%1 is not supported on the %2 family of %3.")
                           .arg(protocol, device().family, device().name)});

    QStringList problems;
    QMap<QString, QVariant> args;
    for (const QString &setting : settings) {
        const int equals = setting.indexOf(QLatin1Char('='));
        const QString key = setting.left(equals).trimmed();
        if (equals <= 0 || key.isEmpty() || setting.contains(QLatin1Char('\n'))) {
            problems << tr("\"%1\" is no setting KEY=VALUE on one line.").arg(setting);
            continue;
        }
        if (args.contains(key)) {
            problems << tr("%1 is set twice.").arg(key);
            continue;
        }
        args.insert(key, settingsValue(setting.mid(equals + 1)));
    }
    QStringList invalid;
    if (!proto->validate(args, invalid) && invalid.isEmpty())
        invalid << tr("%1 cannot read these settings.").arg(protocol);
    problems << invalid;
    if (!problems.isEmpty())
        return refuse(problems);

    Message *msg = proto->createMessage(args);
    if (!msg)
        return refuse({tr("%1 cannot read these settings.").arg(protocol)});
    if (!name.isEmpty())
        msg->name = name;
    QString reason;
    if (!placeIP(msg, proto, args, reason))
        return refuse(reason.split(QLatin1Char('\n')));
    m_changed = true;
    return true;
}

bool serdesipdlg::removeInstance(const QString &name)
{
    if (!m_messages.contains(name)) {
        qCritical(
            "%s",
            qPrintable(
                m_messages.isEmpty()
                    ? tr("No instance %1 to remove: there is none.").arg(name)
                    : tr("No instance %1 to remove; there are %2.")
                          .arg(name, QStringList(m_messages.keys()).join(QStringLiteral(", ")))));
        return false;
    }
    const int before = m_messages.size();
    deleteIP(name);
    return m_messages.size() < before;
}

bool serdesipdlg::saveConfiguration()
{
    const QStringList problems = nameProblems();
    if (!problems.isEmpty()) {
        qCritical("%s", qPrintable(tr("The configuration was not saved, because these names "
                                      "cannot be used:")
                                   + QLatin1Char('\n') + problems.join(QLatin1Char('\n'))));
        return false;
    }
    if (!setupArgs())
        return false;
    m_changed = false;
    return true;
}

bool serdesipdlg::checkConfiguration()
{
    const QStringList problems = nameProblems(true);
    for (const QString &problem : problems)
        qCritical("%s", qPrintable(problem));
    return problems.isEmpty();
}

void serdesipdlg::accept()
{
    if (m_args.isEmpty()) {
        Utils::showMessage(this, QMessageBox::Warning, tr("Warning"),
                           tr("need to generate Protocol IP"));
        return;
    }
    // Names from a file decide where things are written: nothing is written
    // unless every one of them keeps to the core's folder.
    const QStringList problems = nameProblems();
    if (!problems.isEmpty()) {
        Utils::showMessage(this, QMessageBox::Critical, tr("Error"),
                           tr("Nothing was written, because these names cannot be used:")
                               + QStringLiteral("\n") + problems.join(QLatin1Char('\n')));
        return;
    }
    serdes::instance()->setWorkingDir(createPath());
    // The configuration is saved before anything is generated, so that a
    // failing protocol never costs the user the instances.
    if (!setupArgs())
        return;
    if (generate())
        QDialog::accept();
}

QStringList serdesipdlg::nameProblems(bool unrestoredToo) const
{
    QStringList problems;
    const auto check
        = [&problems](const QString &owner, const char *key, const QString &value, bool module) {
              const QString why = nameProblem(value, module);
              if (!why.isEmpty())
                  problems << tr("%1: %2 \"%3\" %4").arg(owner, QLatin1String(key), value, why);
          };
    check(tr("The core"), FILE_NAME, fileName(), false);
    check(tr("The core"), MODULE_NAME, moduleName(), true);
    for (auto it = m_args.cbegin(); it != m_args.cend(); ++it) {
        const QString owner = tr("Instance %1").arg(it.key());
        check(owner, FILE_NAME, it.value().value(QLatin1String(FILE_NAME)).toString(), false);
        check(owner, MODULE_NAME, it.value().value(QLatin1String(MODULE_NAME)).toString(), true);
    }
    for (const UnrestoredInstance &kept : qAsConst(m_unrestored)) {
        // Only an instance group of the current layout holds names of its own.
        if (!unrestoredToo || kept.entries.isEmpty())
            continue;
        check(kept.group, FILE_NAME, kept.entries.value(QLatin1String(FILE_NAME)).toString(),
              false);
        check(kept.group, MODULE_NAME, kept.entries.value(QLatin1String(MODULE_NAME)).toString(),
              true);
    }
    return problems;
}

bool serdesipdlg::generate()
{
    QStringList allIniLines;
    QStringList allCsrLines;
    QStringList allModArgs;
    QStringList projectFiles;
    bool uparNeeded = false;

    const QStringList names = m_args.keys();
    for (int i = 0; i < names.size(); ++i) {
        const QMap<QString, QVariant> args = m_args.value(names.at(i));
        QStringList iniLines;
        QStringList csrLines;
        QStringList modArgs;
        QString outputFile;
        if (!m_owners.value(names.at(i))->generate(args, iniLines, csrLines, modArgs, outputFile,
                                                   true))
            return false;
        // Two instances may set the same parameter to the same value; register
        // text, by contrast, is written as often as it comes.
        for (const QString &line : qAsConst(iniLines)) {
            if (!allIniLines.contains(line))
                allIniLines << line;
        }
        allCsrLines << csrLines;
        const QString module = args.value(QLatin1String(MODULE_NAME)).toString();
        allModArgs << QStringLiteral("-protocol_module_name%1 %2").arg(QString::number(i), module);
        allModArgs << modArgs;
        projectFiles << outputFile;
        if (!uparNeeded)
            uparNeeded = allModArgs.contains(QString(QLatin1Char('-') + module
                                                     + QStringLiteral("EnableDRP true")));
    }

    if (uparNeeded) {
        QMap<QString, QVariant> args;
        QMap<QString, QVariant> info;
        if (!prepareForUparArbiter(args, info))
            return false;
        QString netlist;
        const QStringList sources{QStringLiteral("upar_arbiter.v"),
                                  QStringLiteral("upar_arbiter_wrap.v")};
        if (!waitForRunSyntheSis(device(), args, info, sources,
                                 QLatin1String(UPAR_ARBITER_PROJNAME), netlist, this))
            return false;
        projectFiles << netlist;
    }

    // The wrapper comes before the register file, and nothing is opened or
    // added to the project until both exist.
    QString topFile;
    QString templateFile;
    if (!generateTopModule(allModArgs, topFile, templateFile))
        return false;
    if (!generateCsrFile(allIniLines, allCsrLines))
        return false;
    Core::EditorManager::openEditor(templateFile, false);
    addToProj(projectFiles << topFile);
    return true;
}

bool serdesipdlg::generateTopModule(const QStringList &modLines, QString &topFile,
                                    QString &templateFile)
{
    const int language = uiLanguageIndex();
    const bool vhdl = language != 0;
    QStringList lines;
    lines << QStringLiteral("-type %1").arg(QLatin1String("SERDES"))
          << QStringLiteral("-path %1").arg(QString(createPath() + QLatin1Char('/')))
          << QStringLiteral("-file_type %1").arg(vhdl ? QLatin1String("vhdl") : QLatin1String("vlg"))
          << QStringLiteral("-file_name %1").arg(fileName())
          << QStringLiteral("-mod_name %1").arg(moduleName()) << IPCore::modfileHeader(device())
          << modLines;
    const QString commandFile = createPath() + QLatin1Char('/') + QLatin1String(FILE_MOD);
    if (!IPCore::generateFile(commandFile, lines, this, QString()))
        return false;
    {
        IPCore::TvModGenProxy modGen;
        if (modGen.startModGen(commandFile, static_cast<IPCore::FileType>(language), false) != 0)
            return false;
    }

    const QString suffix = vhdl ? QStringLiteral(".vhd") : QStringLiteral(".v");
    const QString top = createPath() + QLatin1Char('/') + fileName() + suffix;
    if (!QFileInfo::exists(top)) {
        Utils::showMessage(this, QMessageBox::Warning, tr("Warning"), tr("Generation failed!"));
        return false;
    }
    topFile = QFileInfo(top).canonicalFilePath();
    templateFile = QFileInfo(createPath() + QLatin1Char('/') + fileName() + QStringLiteral("_tmp")
                             + suffix)
                       .canonicalFilePath();
    return true;
}

bool serdesipdlg::generateCsrFile(const QStringList &iniLines, const QStringList &csrLines)
{
    const QString path = createPath() + QLatin1Char('/') + fileName() + QStringLiteral(".csr");
    generator csr;
    if (!csr.generate(iniLines, path, csrLines)) {
        IPCore::showErrorMsgs(
            tr("The register file %1 was not made.").arg(QDir::toNativeSeparators(path)),
            csr.getErrStringList());
        return false;
    }
    if (!QFileInfo::exists(path))
        return false;
    TE::TaskEngine::instance()->flowManager()->addResultFile(QFileInfo(path).canonicalFilePath(),
                                                             QLatin1String(TE::RES_SERDES_CSR));
    return true;
}

bool serdesipdlg::addToProj(const QStringList &files)
{
    for (const QString &file : files)
        Core::EditorManager::openEditor(file, false);
    return IPCore::addFilesToProject(files);
}

bool serdesipdlg::generateToml(const QString &path)
{
    QStringList allIniLines;
    for (auto it = m_args.cbegin(); it != m_args.cend(); ++it) {
        QStringList iniLines;
        QStringList csrLines;
        QStringList modArgs;
        QString outputFile;
        if (!m_owners.value(it.key())->generate(it.value(), iniLines, csrLines, modArgs,
                                                outputFile, false))
            return false;
        for (const QString &line : qAsConst(iniLines)) {
            if (!allIniLines.contains(line))
                allIniLines << line;
        }
    }
    return generator().generateTomlFile(allIniLines, path);
}

bool serdesipdlg::prepareForUparArbiter(QMap<QString, QVariant> &args,
                                        QMap<QString, QVariant> &info)
{
    args.insert(QLatin1String(SYNTHESIS_TOOL), uiSynthesisTool());
    args.insert(QLatin1String(LANGUAGE), uiLanguageIndex());
    args.insert(QLatin1String(FILE_NAME), QStringLiteral("upar_arbiter"));
    // The escaped identifier's backslash and tilde are part of the name.
    args.insert(QLatin1String(MODULE_NAME),
                QString(QStringLiteral("\\~upar_arbiter_wrap.") + moduleName()));

    info.insert(QLatin1String(IPCore::Info::KEY_DATADIRECTORY),
                QString(m_info.value(QLatin1String(IPCore::Info::KEY_DATADIRECTORY)).toString()
                        + QStringLiteral("/Upar_Arbiter")));
    info.insert(QLatin1String(IPCore::Info::KEY_LABEL), tr("SerDes Upar Arbiter"));

    const QStringList define{
        QStringLiteral("`define MODULE_NAME %1").arg(moduleName())};
    // The tier says how many requesters its Upar port has. "RK9-370D", a
    // family of no tier's list, has the four of the 370k parts.
    const int requesters = device().family == QLatin1String("RK9-370D")
                               ? tierDescription(Tier::T370k).uparRequesters
                               : tierDescription(tierOf(device().family)).uparRequesters;
    const QStringList parameter{QStringLiteral("parameter DRP_NUM = %1;").arg(requesters)};

    // The synthesis run finds the headers in <file>/temp/<project>.
    const QString dir = createPath() + QStringLiteral("/upar_arbiter/temp/")
                        + QLatin1String(UPAR_ARBITER_PROJNAME);
    if (!QDir(dir).exists() && !IPCore::makeDirs(dir, QString()))
        return false;
    if (!IPCore::generateFile(dir + QLatin1Char('/') + QLatin1String(UPAR_ARBITER_DEFINENAME),
                              define, this, QString()))
        return false;
    return IPCore::generateFile(dir + QLatin1Char('/') + QLatin1String(UPAR_ARBITER_PARAMETER),
                                parameter, this, QString());
}

bool serdesipdlg::setupArgs()
{
    QMap<QString, QVariant> top;
    top.insert(QLatin1String(IPCore::Info::KEY_IP_DEVICE), savedDeviceId());
    top.insert(QLatin1String(IPCore::Info::KEY_IP_TYPE),
               m_info.value(QLatin1String(IPCore::Info::KEY_ID)).toString());
    top.insert(QLatin1String(IPCore::Info::KEY_IP_VERSION), QLatin1String(CUR_VERSION));

    // The model's store is written last and wins: after a reopen it holds the
    // read file's whole "Config" group.
    QMap<QString, QVariant> config;
    config.insert(QLatin1String(SYNTHESIS_TOOL), uiSynthesisTool());
    config.insert(QLatin1String(LANGUAGE), uiLanguageIndex());
    config.insert(QLatin1String(FILE_NAME), fileName());
    config.insert(QLatin1String(MODULE_NAME), moduleName());
    serdes *model = serdes::instance();
    for (auto it = model->data.cbegin(); it != model->data.cend(); ++it)
        config.insert(it.key(), it.value());

    const QString path = configurationFile();
    const auto refuse = [this, &path](const QString &reason) {
        Utils::showMessage(this, QMessageBox::Critical, tr("Error"),
                           tr("The configuration file %1 cannot be written: %2")
                               .arg(QDir::toNativeSeparators(path), reason));
        return false;
    };
    {
        // QSettings tells that it could not write, not why.
        QFile probe(path);
        if (!probe.open(QIODevice::ReadWrite))
            return refuse(probe.errorString());
    }
    QSettings settings(path, QSettings::IniFormat);
    settings.clear();
    settings.setValue(QLatin1String(IPCore::Info::KEY_IPC_VERSION),
                      QLatin1String(IPCore::Info::IPC_VERSION_LATEST));
    for (auto it = top.cbegin(); it != top.cend(); ++it)
        settings.setValue(it.key(), it.value());

    settings.beginGroup(QLatin1String(IPCore::Info::GROUP_CONFIG));
    for (auto it = config.cbegin(); it != config.cend(); ++it)
        settings.setValue(it.key(), it.value());
    settings.endGroup();

    settings.beginGroup(QLatin1String(ALLACCESS));
    const QMap<QString, QStringList> routes = model->allAccess();
    for (auto it = routes.cbegin(); it != routes.cend(); ++it)
        settings.setValue(it.key(), it.value().join(QStringLiteral(" -> ")));
    settings.endGroup();

    for (auto it = m_args.cbegin(); it != m_args.cend(); ++it) {
        const Message *msg = m_messages.value(it.key(), nullptr);
        settings.beginGroup((msg ? msg->type : QString()) + QLatin1String(NAME_SPLIT) + it.key());
        const QMap<QString, QVariant> &args = it.value();
        for (auto arg = args.cbegin(); arg != args.cend(); ++arg)
            settings.setValue(arg.key(), arg.value());
        settings.endGroup();
    }
    for (const UnrestoredInstance &kept : qAsConst(m_unrestored)) {
        // An instance of the older layouts lived in a file of its own, which
        // is left as it is; it has no group here to keep.
        if (!kept.group.contains(QLatin1String(NAME_SPLIT)))
            continue;
        settings.beginGroup(kept.group);
        for (auto entry = kept.entries.cbegin(); entry != kept.entries.cend(); ++entry)
            settings.setValue(entry.key(), entry.value());
        settings.endGroup();
    }
    settings.sync();
    if (settings.status() != QSettings::NoError)
        return refuse(tr("the file system refused it"));
    return true;
}

QString serdesipdlg::configurationFile() const
{
    return createPath() + QLatin1Char('/') + fileName() + QStringLiteral(".ipc");
}

bool serdesipdlg::parseData(const QString &file)
{
    QSettings settings(file, QSettings::IniFormat);
    const QString version = settings.value(QLatin1String(IPCore::Info::KEY_IP_VERSION)).toString();
    const QString config = QLatin1String(IPCore::Info::GROUP_CONFIG);
    bool known = true;
    if (version == QLatin1String("1.0")) {
        parseData_v_1_0(readGroup(settings, config));
    } else if (version == QLatin1String("1.1")) {
        parseData_v_1_1(readGroup(settings, config));
    } else if (version == QLatin1String("1.2")) {
        const QStringList groups = settings.childGroups();
        for (const QString &group : groups)
            parseData_v_1_2(group, readGroup(settings, group));
    } else {
        known = false;
    }
    if (known) {
        // What the file holds is where the user's changes start from.
        m_changed = false;
        showUnrestored();
        return true;
    }
    Utils::showMessage(this, QMessageBox::NoIcon, tr("Error"),
                       tr("This version of specified IP Config file is incompatible with "
                          "current IP Core Generator."));
    return false;
}

void serdesipdlg::parseData_v_1_2(const QString &group, const QMap<QString, QVariant> &entries)
{
    if (group == QLatin1String(IPCore::Info::GROUP_CONFIG)) {
        serdes::instance()->parseGlobalData(entries);
        uiSetSynthesisTool(entries.value(QLatin1String(SYNTHESIS_TOOL)).toString());
        uiSetLanguageIndex(entries.value(QLatin1String(LANGUAGE)).toInt());
        setFileName(entries.value(QLatin1String(FILE_NAME)).toString());
        setModuleName(entries.value(QLatin1String(MODULE_NAME)).toString());
        return;
    }
    if (group == QLatin1String("General") || group == QLatin1String(ALLACCESS))
        return;
    const QString protocol = group.section(QLatin1String(NAME_SPLIT), 0, 0);
    BaseProtocol *proto = m_tree->getIPCoreByName(protocol);
    if (!proto) {
        qDebug() << "unknown group name";
        keepUnrestored(group, entries, tr("The protocol %1 is not installed.").arg(protocol));
        return;
    }
    restoreIP(group, proto, entries);
}

void serdesipdlg::parseData_v_1_1(const QMap<QString, QVariant> &config)
{
    uiSetSynthesisTool(config.value(QLatin1String(SYNTHESIS_TOOL)).toString());
    uiSetLanguageIndex(config.value(QLatin1String(LANGUAGE)).toInt());
    setFileName(config.value(QLatin1String(FILE_NAME_OLD)).toString());
    setModuleName(config.value(QLatin1String(MODULE_NAME_OLD)).toString());

    const QString oldCreateIn = config.value(QLatin1String(CREATEIN)).toString();
    const QStringList names = config.value(QLatin1String(KEYS)).toStringList();
    for (const QString &name : names) {
        QStringList place = config.value(name).toStringList();
        // An entry is a directory and a file base name; a shorter one names
        // no file that can exist.
        while (place.size() < 2)
            place << QString();
        // A moved project still finds its instance files where they stood
        // relative to the directory it was created in.
        const QString oldPath = place.at(0) + QLatin1Char('/') + place.at(1) + QStringLiteral(".ipc");
        const QString relative = QDir(oldCreateIn).relativeFilePath(oldPath);
        const QString path = QFileInfo(uiCreateIn() + QLatin1Char('/') + relative).absoluteFilePath();

        if (!QFileInfo(path).isFile()) {
            keepUnrestored(name, {},
                           tr("Its file %1 is missing.").arg(QDir::toNativeSeparators(path)));
            continue;
        }
        QSettings instance(path, QSettings::IniFormat);
        const QString type = instance.value(QLatin1String(IPCore::Info::KEY_IP_TYPE)).toString();
        QMap<QString, QVariant> args = readGroup(instance, QLatin1String(IPCore::Info::GROUP_CONFIG));
        const QStringList topKeys = instance.childKeys();
        for (const QString &key : topKeys)
            args.insert(key, instance.value(key));
        args.insert(QLatin1String(CREATEIN),
                    QString(oldCreateIn + QLatin1Char('/')
                            + args.value(QLatin1String(FILE_NAME)).toString()));

        BaseProtocol *proto = m_tree->getIPCoreById(type);
        if (!proto) {
            qDebug() << "unknown group name";
            keepUnrestored(name, {}, tr("The protocol %1 is not installed.").arg(type));
            continue;
        }
        // Kept, it is written back as an instance group of the current layout.
        // The page made its map, so there is nothing for the protocol to check.
        restoreIP(proto->name() + QLatin1String(NAME_SPLIT) + name, proto, args, name, false);
    }
}

void serdesipdlg::parseData_v_1_0(const QMap<QString, QVariant> &config)
{
    // The first layout wrote empty entries for instances without a file; "0"
    // stands in for what is missing, so that such an entry names a file too.
    QMap<QString, QVariant> padded = config;
    const QStringList names = config.value(QLatin1String(KEYS)).toStringList();
    for (const QString &name : names)
        padded.insert(name, QVariant(config.value(name).toStringList()
                                     << QStringLiteral("0") << QStringLiteral("0")
                                     << QStringLiteral("0")));
    parseData_v_1_1(padded);
}

} // namespace IPSERDESIP
