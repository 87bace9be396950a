// SPDX-License-Identifier: MIT
#pragma once

#include "model/instance.h"
#include "model/lane.h"
#include "model/line.h"
#include "model/mux.h"
#include "model/pll.h"
#include "model/quad.h"
#include "model/ref_source.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace IPSERDESIP {

class Message;

// The transceiver clock network of the current device, the routes generated
// on it, and a small store of global parameters. One per dialog pass: the
// page destroys it when the pass ends, so that the next one starts clean.
//
// Elements are made by initilize() and never freed, neither by a later
// initilize() nor by destory(): pointers that protocol plug-ins were handed
// stay valid for the life of the process.
class SERDESIP_EXPORT serdes
{
public:
    static serdes *instance();
    static void destory();

    // Builds the network of the tier that the part family string names; any
    // string no tier lists gets the largest one.
    void initilize(const QString &device);
    void init880k();
    void init370k();
    void init90k();

    QString workingDir() const;
    void setWorkingDir(const QString &dir);

    // Invalid for a missing key and for a stored null value alike.
    QVariant getData(const QString &key);
    void setData(const QString &key, QVariant value);
    void removeData(const QString &key);
    void parseGlobalData(const QMap<QString, QVariant> &data);

    bool instanceEnable(const QString &name);
    QMap<QString, Instance *> allInstance();
    QMap<QString, QStringList> allAccess();
    // Forgets the records only; selections and counts stay as they are.
    void clearAccess();

    // The lookups return null for an unknown name or an element of another
    // kind. A lane is found by any text that holds its name, a line's too.
    LANE *FormStringToLanePtr(const QString &name);
    REF_SOURCE *FormStringToREFSPtr(const QString &name);
    MUX *FormStringToMuxSPtr(const QString &name);
    // Follows muxes by their current selection down to a reference source.
    REF_SOURCE *findRefsource(const QString &name);
    double getH(int index);

    // Route checking. A route runs from a line through muxes to the reference
    // source `ref`; the check forms change nothing, the generate forms select
    // and count the muxes and record the route in `access` under the line's
    // name. A TX line is clocked by the PLL named in its source, an RX line by
    // a mux; the ForRxConnectPll forms clock every line by a PLL.
    bool checkAccess(const QString &ref, const QString &line);
    bool checkAccess(const QString &ref, const QString &via, const QString &line);
    bool generateAccess(const QString &ref, const QString &line, QList<QString> &path);
    bool generateAccess(const QString &ref, const QString &via, const QString &line,
                        QList<QString> &path);
    bool checkAccessForRxConnectPll(const QString &ref, const QString &line);
    bool generateAccessForRxConnectPll(const QString &ref, const QString &line,
                                       QList<QString> &path);
    bool generateAccessForRxConnectPll(const QString &ref, const QString &via, const QString &line,
                                       QList<QString> &path);
    // Generates the routes of a whole selection, row by row, and leaves them
    // held; a refused row ends the batch and nothing taken before is given
    // back. Of the frequencies only their number matters.
    bool checkRoute(const QStringList &lanes, const QStringList &plls, const QStringList &refs,
                    const QStringList &freqs);
    bool checkRoute(const QStringList &lanes, const QStringList &plls, const QStringList &refs,
                    const QStringList &freqs, const QMap<QString, QString> &muxOptions);
    bool checkRouteForRxConnectPll(const QStringList &lanes, const QStringList &plls,
                                   const QStringList &refs, const QStringList &freqs);

    // Requests of protocol instances. addItem reserves, row by row, the lines,
    // the reference source at its frequency and a route for each line; on a
    // refusal `err` gets the reason and nothing placed so far is given back.
    // deleteItem releases a request that addItem took.
    bool addItem(Message *msg, QString &err);
    bool addItemForRxConnectPll(Message *msg, QString &err);
    bool deleteItem(Message *msg, QString &err);
    // Releases one row's lines and routes; the reference source too when
    // `releaseRef`. On a row that got its line but no route it can release
    // routes that another request holds on a shared PLL or mux: undo a
    // refused request or a trial with releaseLastRequest() instead.
    void resetLane(const QString &lane, bool releaseRef);
    // Gives back everything that the last addItem, addItemForRxConnectPll or
    // checkRoute call reserved, accepted or refused: lines, reference
    // sources, selects, counts, routes and names return to exactly where they
    // stood before that call, and what other requests hold is not touched.
    // Call it straight after the request. False when there is nothing to give
    // back: no request since initilize, deleteItem, resetLane, clearAccess or
    // the last release.
    bool releaseLastRequest();

    // What a protocol dialog offers: lane labels "Q0 Lane0" .. "Q1 Lane3".
    QStringList occupiedLanes();
    QStringList notOccupiedLanes();
    // "QPLL0" and "QPLL1" of the quad where a line already runs from it at
    // exactly `rate`, so that a second protocol can share the PLL.
    QStringList checkPLLforQuad0(double rate);
    QStringList checkPLLforQuad1(double rate);
    // How a running PLL is set: its reference source and frequency, and the
    // rates of the lines on it.
    QMap<QString, QVariant> getMessageByPLL(const QString &pll);
    // The select of the lane's PLL (RX line's first, then TX line's) that leads
    // to `ref` within two steps; -1 when there is none.
    int getMuxSelofPll(const QString &lane, const QString &ref);
    bool checkPllEnable(const QString &pll);

    // `option` is a mux option without its "REF", such as "MUX1".
    QString getMuxNamefromOption(const QString &quad, const QString &option);
    // The frequency of a held reference source named by its option string.
    double getFreqByRefsrc(const QString &option);

    QMap<QString, QUAD *> quads;
    // Every named element: lanes, lines, muxes, PLLs and reference sources.
    QMap<QString, Instance *> instances;
    // Generated routes by line name: the line, the muxes in order, the source.
    QMap<QString, QStringList> access;
    // The part family string given to initilize().
    QString device;
    QString m_workingDir;
    QMap<QString, QVariant> data;
    // Names taken by accepted requests; protocol dialogs propose others.
    QStringList moduleNames;
    QStringList fileNames;

private:
    serdes();
    ~serdes();
    Q_DISABLE_COPY(serdes)

    // The model as a request found it. An element's holding is its count and
    // what it holds: a line's rate and source, a source's frequency, a mux's
    // select and direction.
    struct Holding
    {
        int count;
        double value;
        QString source;
        int sel;
        int dir;
    };
    struct Snapshot
    {
        QHash<Instance *, Holding> holdings;
        QMap<QString, QStringList> access;
        QStringList moduleNames;
        QStringList fileNames;
    };
    void rememberBeforeRequest();
    void forgetLastRequest();

    QStringList checkPLLforQuad(const char *quad, const char *qpll0, const char *qpll1,
                                double rate);

    void init880kLANE(QUAD *q0, QUAD *q1);
    void init880kMUX(QUAD *q0, QUAD *q1);
    void init880kPLL(QUAD *q0, QUAD *q1);
    void init880kREFS(QUAD *q0, QUAD *q1);
    void init370kLANE(QUAD *q0);
    void init370kMUX(QUAD *q0);
    void init370kPLL(QUAD *q0);
    void init370kREFSandGPIO(QUAD *q0);
    void init90kLANE(QUAD *q0);
    void init90kMUX(QUAD *q0);
    void init90kPLL(QUAD *q0);
    void init90kREFSandGPIO(QUAD *q0);

    Snapshot m_beforeRequest;
    bool m_requestRemembered = false;
};

} // namespace IPSERDESIP
