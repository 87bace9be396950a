// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <dev/devicearg.h>

#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariant>

namespace IPSERDESIP {

class Message;

// One protocol of a protocol plug-in. The order of the virtual operations is
// the plug-in ABI: do not reorder them.
class SERDESIP_EXPORT BaseProtocol : public QObject
{
    Q_OBJECT

public:
    explicit BaseProtocol(QObject *parent = nullptr);
    ~BaseProtocol() override;

    // Runs the dialog for a new instance. An empty map: the user cancelled.
    virtual QMap<QString, QVariant> create(const QString &createPath,
                                           const DEV::DeviceArg &device) = 0;
    // Runs the dialog on an instance's parameters. An empty map: cancelled.
    virtual QMap<QString, QVariant> edit(const QMap<QString, QVariant> &args) = 0;
    // The resource request of an instance; the caller owns it. Called without
    // a dialog too, when a configuration file is opened.
    virtual Message *createMessage(const QMap<QString, QVariant> &args) = 0;
    // The instance's outputs: parameter lines ("name value"), further register
    // text, lines for the module generator's command file, and the file that
    // stands for the instance in the project. With fullRun false only the
    // parameter lines are wanted. False stops the generation.
    virtual bool generate(const QMap<QString, QVariant> &args, QStringList &iniLines,
                          QStringList &csrLines, QStringList &modArgs, QString &outputFile,
                          bool fullRun) = 0;
    // Checks a parameter map that did not come from the protocol's dialog (an
    // instance of a reopened configuration, `ipcoregen --add`), appending
    // every problem to `errors`; the page calls it before createMessage.
    virtual bool validate(const QMap<QString, QVariant> &args, QStringList &errors) const = 0;
    virtual QString version() const;
    // Stable identifier, by which older configuration files name the protocol.
    virtual QString id() const = 0;
    // Display name; also the type of its requests and the first part of an
    // instance's group in a configuration file.
    virtual QString name() const = 0;
    // Folders of the chooser's tree, outermost first.
    virtual QStringList category() const = 0;
    virtual QString summaryFile() const = 0;
    virtual bool isSupported(const DEV::DeviceArg &device) const = 0;

    // The device of the current dialog.
    DEV::DeviceArg device;
};

} // namespace IPSERDESIP
