// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

namespace IPSERDESIP {

class taskcommand;

// The stand-in's own register map, read from its data file: where each lane's
// registers start, and which field of which register holds each value of a
// task. It is illustrative and not the device's.
class registermap
{
public:
    // Replaces the map with the file's. False when the file cannot be read or
    // any line is wrong; faults() then names the file and line of each.
    bool load(const QString &path);
    QStringList faults() const { return m_faults; }

    // The writes of `command`, lane by lane in ascending order and register by
    // register in the order of the map, each as
    //     upar_write_driver 0xAAAAAA 0xDDDDDDDD
    // with the address at index 20 and the data at index 29. Values that are
    // not given, or that the command refused, are passed over, so a refused
    // command is judged as far as it goes. False when a value has no code:
    // valueFaults() then holds one text per value beyond its field, in the
    // units the value is given in, and faults() the faults of the map.
    bool writes(const taskcommand &command, QStringList &lines);
    QStringList valueFaults() const { return m_valueFaults; }

private:
    enum class Encoding { Integer, Micro, Words };

    struct Field
    {
        QString task;
        quint32 offset = 0;
        int low = 0;
        int width = 0;
        QString source;
        Encoding encoding = Encoding::Integer;
        QMap<QString, quint32> words;
        int line = 0;
    };

    bool readLane(const QStringList &parts, int line);
    bool readField(const QStringList &parts, int line);
    bool encode(const Field &field, const QString &flag, const QString &value, quint32 &code);
    void fault(int line, const QString &text);

    QString m_path;
    QMap<QString, quint32> m_laneBase; // "q0.ln0" ... "q1.ln3"
    QVector<Field> m_fields;
    QStringList m_faults;
    QStringList m_valueFaults;
};

} // namespace IPSERDESIP
