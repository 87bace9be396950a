// SPDX-License-Identifier: MIT
#pragma once

#include "model/instance.h"

#include <QList>
#include <QStringList>

namespace IPSERDESIP {

// A clock selector with selCount x dirCount input positions. What sits at a
// position, and which device parameter lines a selection gives, are the two
// functions handed to the constructor: they carry all of the device's wiring.
//
// A free mux (count 0) may be pointed anywhere; a held one keeps its selection
// and can only be shared by routes to the source that selection leads to.
class SERDESIP_EXPORT MUX : public Instance
{
public:
    MUX(QUAD *quad, const QString &name, QStringList (*optionFn)(MUX *), int selCount, int dirCount,
        QString (*pointFn)(int, int));
    ~MUX() override;

    int sel();
    int dir();
    QStringList tomlParameter();
    // The name at the current selection: a reference source, another mux, or
    // empty for an open position.
    QString point();
    // Releases one route that ended on the reference source `ref`, along the
    // whole chain of muxes behind this one.
    void reset(const QString &ref);

    // The searches walk from this mux towards `ref`. Direct hits win over
    // descents; among equals the lowest direction, then the lowest select,
    // wins. With `via`, a descent is only made into the mux of that name.
    bool checkReachAccess(const QString &ref);
    bool checkReachAccess(const QString &ref, const QString &via);
    // As the checks, and binding: every mux of the route found is selected,
    // its count raised, and its name appended to `path`. A failed search
    // leaves every count, selection and `path` as they were.
    bool getReachAccess(const QString &ref, QList<QString> &path);
    bool getReachAccess(const QString &ref, const QString &via, QList<QString> &path);

    // Selected position and direction; 0 while free.
    int m_sel;
    int m_dir;
    int selCount;
    // 2 only for a bridge between quads, where the direction says which quad
    // the clock comes from.
    int dirCount;
    QString (*pointFn)(int sel, int dir);
    QStringList (*optionFn)(MUX *mux);
};

} // namespace IPSERDESIP
