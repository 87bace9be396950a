// SPDX-License-Identifier: MIT
#pragma once

#include "page/microsysipgendlg.h"

#include <QList>
#include <QMap>
#include <QPair>
#include <QVariant>

class QPluginLoader;
class Ui_Serdesipdlg;

namespace IPSERDESIP {

class BaseProtocol;
class M_TreeComboBoxWidget;
class Message;
class clockSchematicView;
class reconfiguration;
class serdesView;

// The SerDes page: one transceiver configuration built up from protocol
// instances. It loads the protocol plug-ins, fills the chooser, and keeps
// each instance as three entries under its name (parameters, protocol,
// request), which it brings in and out of the model and the floorplan
// together. Ascending name order is the order of instances everywhere.
class SERDESIP_TEST_EXPORT serdesipdlg : public MicroSysIPGenDlg
{
    Q_OBJECT
    // For runs without a person, read by name: the instances placed, and
    // those of the opened file that could not be placed again.
    Q_PROPERTY(int placedInstances READ placedInstances)
    Q_PROPERTY(int unrestoredInstances READ unrestoredCount)
    // The file that OK and saveConfiguration() write.
    Q_PROPERTY(QString configurationFile READ configurationFile)

public:
    serdesipdlg(const QMap<QString, QVariant> &info, QWidget *parent = nullptr);
    ~serdesipdlg() override;

    void dialogDidPrepare() override;
    bool parseData(const QString &file) override;

    // The configuration file: written on OK, read when a core is opened.
    bool setupArgs();
    void parseData_v_1_0(const QMap<QString, QVariant> &config);
    void parseData_v_1_1(const QMap<QString, QVariant> &config);
    void parseData_v_1_2(const QString &group, const QMap<QString, QVariant> &entries);

    // The deliverables of OK in the "Create In" directory, in this order: the
    // protocols' own files, the Upar arbiter's netlist when one asks for DRP,
    // the top file and its template, and the register file. A failure leaves
    // everything written so far on disk and returns false.
    bool generate();
    // Every name of the core and its instances that cannot name a file in
    // the core's folder or a module, with whose it is and why; with
    // `unrestoredToo`, the names of the instances kept aside as well.
    QStringList nameProblems(bool unrestoredToo = false) const;
    bool generateTopModule(const QStringList &modLines, QString &topFile, QString &templateFile);
    bool generateCsrFile(const QStringList &iniLines, const QStringList &csrLines);
    bool addToProj(const QStringList &files);
    // The parameter file alone, from the protocols' parameter lines.
    bool generateToml(const QString &path);
    // The arguments of the arbiter's synthesis run, and its two headers.
    bool prepareForUparArbiter(QMap<QString, QVariant> &args, QMap<QString, QVariant> &info);

    // The clock schematic's wires, from the model's routes: source side first.
    QList<QPair<QString, QString>> getConnectListFromToml();
    // The same wires as the parameter file describes them. Not what the
    // schematic draws: kept to cross-check the file against the model.
    QList<QPair<QString, QString>> getConnectList();

    const QMap<QString, QMap<QString, QVariant>> &instanceArgs() const { return m_args; }
    const QMap<QString, Message *> &instanceMessages() const { return m_messages; }

    // An instance group of the opened file that could not be placed again. It
    // holds nothing in the model, and OK writes it back exactly as it was
    // read, so that it returns once what stood in its way is gone.
    struct UnrestoredInstance
    {
        QString group;
        QMap<QString, QVariant> entries;
        QString reason;
    };
    const QList<UnrestoredInstance> &unrestoredInstances() const { return m_unrestored; }
    int placedInstances() const { return m_args.size(); }
    int unrestoredCount() const { return m_unrestored.size(); }
    QString configurationFile() const;
    // Whether instances were created, edited or deleted since the page opened.
    bool hasChanges() const { return m_changed; }

public slots:
    void accept() override;
    // Asks before instances made or changed on the page are thrown away.
    void reject() override;
    void createIP(QString name);
    void editIP(QString name);
    void deleteIP(QString name);
    void onSelectIP();
    void onCreateButtonClidked();
    void showClockSchematic();
    void showReconfiguration();

    // For runs without a person, found by name: the configuration as placed,
    // as JSON, and the clock schematic as a picture (SVG or PNG by suffix).
    // Each says on the message handler why it could not write.
    bool writeReport(const QString &path);
    bool writeSchematic(const QString &path);

    // For runs without a person, found by name: a configuration changed as
    // text. Each prints on the message handler what stands in its way and
    // changes nothing then.
    // The core's "Create In" directory, its file and module names and its
    // language ("verilog", "vhdl"); an empty module or language keeps the
    // page's.
    bool setCoreNames(const QString &directory, const QString &file, const QString &module,
                      const QString &language);
    // One instance of `protocol` from settings "KEY=VALUE", each value written
    // as the configuration file holds it, checked by the protocol and placed
    // as its dialog's OK would place it. `name`, when given, is the name of
    // the instance's group.
    bool addInstance(const QString &protocol, const QStringList &settings, const QString &name);
    bool removeInstance(const QString &name);
    // Writes the configuration file as OK does, and nothing else.
    bool saveConfiguration();
    // Whether every name of the core and its instances can be written. What
    // could not be placed again was said, instance by instance and problem by
    // problem, when the file was opened.
    bool checkConfiguration();

private:
    void initTree();
    // Takes over `msg` if the model accepts it, and frees it if not, telling
    // the user why.
    bool addIP(Message *msg, BaseProtocol *proto, const QMap<QString, QVariant> &args);
    // addIP without a word to the user: false with the reason, `msg` freed
    // and nothing held, when it cannot be placed beside the instances there are.
    bool placeIP(Message *msg, BaseProtocol *proto, const QMap<QString, QVariant> &args,
                 QString &reason);
    // Places an instance read from a file, or keeps it aside with its reason.
    // A map of the current layout is checked by its protocol first; one that
    // the page put together from an older layout is not.
    void restoreIP(const QString &group, BaseProtocol *proto,
                   const QMap<QString, QVariant> &entries, const QString &name = QString(),
                   bool check = true);
    void keepUnrestored(const QString &group, const QMap<QString, QVariant> &entries,
                        const QString &reason);
    void showUnrestored();
    double chooseHue() const;
    // Draws an open schematic again after the instances changed.
    void refreshSchematic();
    void showModelError(const QString &err);

    QMap<QString, QVariant> m_info;
    Ui_Serdesipdlg *m_ui;
    M_TreeComboBoxWidget *m_tree = nullptr;
    serdesView *m_view = nullptr;
    QList<BaseProtocol *> m_protocols;
    QList<QPluginLoader *> m_loaders;
    QMap<QString, QMap<QString, QVariant>> m_args;
    QMap<QString, BaseProtocol *> m_owners;
    QMap<QString, Message *> m_messages;
    QList<UnrestoredInstance> m_unrestored;
    bool m_changed = false;
    clockSchematicView *m_schematic = nullptr;
    reconfiguration *m_reconfig = nullptr;
};

} // namespace IPSERDESIP
