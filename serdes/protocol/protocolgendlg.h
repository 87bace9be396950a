// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <dev/devicearg.h>
#include <utils/pinfigure.h>

#include <QDialog>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

class Ui_genDlg;

namespace IPSERDESIP {

// The frame of a protocol's configuration dialog: the module's symbol on the
// left, the file and device fields on the right above the protocol's own tab
// pages. A protocol derives from it, adds its pages with uiAddTab, and runs
// it from BaseProtocol::create (after setCreating) or BaseProtocol::edit
// (after setOpening). The frame proposes file and module names that no
// instance has taken yet and offers the checks an accept() needs.
class SERDESIP_EXPORT protocolGenDlg : public QDialog
{
    Q_OBJECT

public:
    explicit protocolGenDlg(QWidget *parent = nullptr);
    ~protocolGenDlg() override;

    // Runs at the end of setCreating and setOpening, once the fields are
    // filled.
    virtual void dialogDidPrepare();
    // Fills the protocol's own widgets from a stored parameter map; false
    // when the map cannot be shown.
    virtual bool restoreArgs(const QMap<QString, QVariant> &args) = 0;
    // Shows the device that a stored map names by "target_device".
    virtual void setDevice(const QMap<QString, QVariant> &args);

    int uiAddTab(QWidget *page, const QString &title);
    void uiSetFigurePins(const QList<Utils::PinFigure> &pins);
    void uiSetLabelText(const QString &text);
    // The base of the file names proposed; also what browsing appends.
    void uiSetDefaultFileName(const QString &name);
    void uiSetModuleName(const QString &name);
    void uiSetModuleNameReadOnly(bool readOnly);
    // Gives the module name field the look of a disabled one while it stays
    // selectable, for protocols whose module name is fixed.
    void uiSetModuleNameColor();
    QString moduleName() const;
    QString fileName() const;
    QString createPath() const;
    // 0 is Verilog, 1 is VHDL.
    int uiLanguageIndex() const;
    void uiSetLanguageIndex(int index);
    QString uiSynthesisTool() const;
    void uiSetSynthesisTool(const QString &tool);
    void uiSetSynTools(const QStringList &tools);
    void uiSetButtonOKEnabled(bool enabled);
    void uiSetButtonHelpEnabled(bool enabled);
    void setOptionsAvailable(bool available);
    // Hides the index-th tab bar of the option pages: a protocol with one
    // page shows it without a tab.
    void uiHideTabOptionLabel(int index);
    // The directory follows the file name from now on, and can no longer be
    // edited or browsed.
    void fileNameConnectCreatIn();
    void hideHelp();

    // A new instance below `createPath`. Call after setting the default
    // names: they are the bases of the proposals.
    void setCreating(const QString &createPath, const DEV::DeviceArg &device);
    // An existing instance: its directory, file name and language are fixed.
    bool setOpening(const QMap<QString, QVariant> &args);
    void fillFileInfo(const QMap<QString, QVariant> &args);

    // For the derived class's accept(). Each reports to the user itself.
    QStringList checkFileOptions();
    bool checkFileExisting();
    bool checkModuleName();
    void showErrorMsg(const QStringList &errors);

public slots:
    void accept() override = 0;
    void onBtnBrowse();
    void onBtnHelp();
    void setCreatPath(const QString &text);

protected:
    QString m_helpFile;
    Ui_genDlg *m_ui = nullptr;
    QString m_defaultFileName;
    QString m_createPath;
    bool m_opening = false;
    DEV::DeviceArg m_device;

private:
    void showDevice();
};

} // namespace IPSERDESIP
