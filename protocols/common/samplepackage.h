// SPDX-License-Identifier: MIT
#pragma once

#include <protocol/protocolpackage.h>

namespace samples {

// The root object of a sample protocol's plug-in, which carries one protocol.
// Its metadata is the description of the protocol's parameters: moc finds no
// "protocol.json" beside this header and takes the one samples.cmake puts in
// each plug-in's include path, a copy of the protocol's "<name>.json".
class SamplePackage : public IPSERDESIP::ProtocolPackage
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.tarvexchip.plugins.ProtocolPackage/1.0" FILE "protocol.json")
    Q_INTERFACES(IPSERDESIP::ProtocolPackage)

public:
    QList<IPSERDESIP::BaseProtocol *> protocols() override;
};

// The plug-in's protocol, made anew; `path` is the plug-in's directory. Each
// plug-in defines it beside its protocol class.
IPSERDESIP::BaseProtocol *makeProtocol(const QString &path);

} // namespace samples
