// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <dev/devicearg.h>

#include <QDialog>
#include <QString>
#include <QStringList>

class QSettings;
class QUrl;
class QWebView;
class Ui_MicroSysIPGenDlg;

namespace IPSERDESIP {

class BaseProtocol;

// The generator's frame: device summary, file options, and a free area in
// which a derived class puts its page beside a help pane. A dialog comes to
// life either for a new core (setCreating) or on an existing configuration
// file (setOpening); the content is the derived class's.
class SERDESIP_TEST_EXPORT MicroSysIPGenDlg : public QDialog
{
    Q_OBJECT

public:
    explicit MicroSysIPGenDlg(QWidget *parent = nullptr);
    ~MicroSysIPGenDlg() override;

    // Runs once the device is known: the place to prepare the model.
    virtual void dialogDidPrepare();
    // Finds the device of a configuration file, by "target_device" or, in
    // older files, by the chip, package and speed of the group "device".
    virtual void setDevice(QSettings &settings);
    virtual bool parseData(const QString &file) = 0;

    void setCreating(const QString &path, const DEV::DeviceArg &device);
    // False when the file's data could not be taken; the caller then does
    // not show the dialog.
    bool setOpening(const QString &path, const QString &file);
    DEV::DeviceArg device() const { return m_device; }
    // The device identifier to save: the device's, or the one the opened file
    // named when the device database does not know it, so that it is kept.
    QString savedDeviceId() const { return m_device.id.isEmpty() ? m_fileDeviceId : m_device.id; }

    // Puts `page` into the free area, beside the help pane.
    void uiAddWidget(QWidget *page);
    void showIPView(BaseProtocol *proto);
    // `file` is relative to the core's doc directory.
    void showIPView(QString file);

    QString createPath() const;
    QString fileName() const;
    QString moduleName() const;
    QString uiCreateIn() const;
    QString uiSynthesisTool() const;
    int uiLanguageIndex() const;
    int uiSynthesisToolIndex() const;

    void setFileName(const QString &name);
    void setModuleName(const QString &name);
    void uiSetLanguageIndex(int index);
    void uiSetSynthesisTool(const QString &tool);
    // The model's working directory follows the field whenever the program
    // sets it; what the user types reaches the model only on accept.
    void uiSetCreateIn(const QString &path);
    void uiSetCreateIn(bool enabled);
    void uiSetLanguageEnable(bool enabled);
    void uiSetSynToolEnabled(bool enabled);
    void uiSetButtonOKEnabled(bool enabled);
    void setOPtoinsAvailable(bool available);
    // The frame has no title strip; kept for derived classes written against
    // frames that have one.
    void uiSetLabelText(const QString &text);

    QStringList checkFileOptions();
    bool checkFileExisting();
    void showErrorMsg(const QStringList &errors);

public slots:
    void onBtnBrowse();
    void onBtnHelp();
    void onLinkClicked(const QUrl &url);

protected:
    QString m_helpFile;
    DEV::DeviceArg m_device;
    QString m_fileDeviceId;
    Ui_MicroSysIPGenDlg *m_ui = nullptr;
    QWebView *m_webView = nullptr;
    bool m_opening = false;
    QString m_defaultFileName;
    QString m_defaultModuleName;

private:
    void showDevice();
    // Shows a page in the help pane, styled after the application's palette.
    void renderHelpPage(const QString &path);
};

} // namespace IPSERDESIP
