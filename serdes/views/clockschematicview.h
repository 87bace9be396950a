// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <dev/devicearg.h>

#include <QDialog>
#include <QHash>
#include <QList>
#include <QPair>
#include <QString>

class QAction;
class QGraphicsScene;
class QPointF;
class QRectF;

namespace IPSERDESIP {

class Item;
class NetItem;
class NoteItem;
class clockGraphicView;
namespace schematic {
struct TierLayout;
}

// The window "View Clock Schematic": the device's clock network from the
// reference sources through the muxes and PLLs to the lanes' TX and RX lines.
// The nodes are laid out once for the device; each updateView() colours the
// nodes of the connection list, draws its wires with a dot where a wire
// branches, and writes the labels as notes beside their nodes. The window
// reads no model: it draws the list and labels it is handed.
//
// Use: construct for the page's device, then for each showing
// setConnectionList(), setLabels() and updateView(). The window opens with
// the whole drawing fitted to it; the Save key sequence writes the drawing to
// an SVG or PNG file; the Labels button shows and hides the notes.
class SERDESIP_TEST_EXPORT clockSchematicView : public QDialog
{
    Q_OBJECT

public:
    explicit clockSchematicView(const DEV::DeviceArg &device, QWidget *parent = nullptr);
    ~clockSchematicView() override;

    // Pairs of element names, a wire from `first` to `second`. Draws nothing.
    void setConnectionList(const QList<QPair<QString, QString>> &list);
    // Notes by element name, such as "156.25 MHz" for a reference source or
    // "10.3125 Gbps" for a line; only sources and lines have room for one,
    // and names of other nodes or none are passed over. Draws nothing.
    void setLabels(const QHash<QString, QString> &labels);
    // Redraws every wire, node colour and note from the connection list and
    // the labels.
    void updateView();
    bool labelsShown() const;

    // Writes the whole drawing, as it stands, to `fileName`: SVG or PNG by
    // the file's suffix. False, with the reason in `error`, when the suffix
    // names neither or the file cannot be written.
    bool saveImage(const QString &fileName, QString &error) const;
    // The schematic of `device` with the wires of `connections` and the
    // notes of `labels`, written to `fileName` as saveImage() does, without
    // showing a window.
    static bool saveSchematic(const DEV::DeviceArg &device,
                              const QList<QPair<QString, QString>> &connections,
                              const QHash<QString, QString> &labels, const QString &fileName,
                              QString &error);

    void createLine(const QString &key, const QString &label, const QPointF &pos);
    void createPLL(const QString &key, const QString &label, const QPointF &pos);
    void createMux(const QString &key, const QString &label, const QPointF &pos);
    void createRefClk(const QString &key, const QString &label, const QPointF &pos);
    void createBox(const QString &label, const QRectF &rect, const QPointF &pos);

    DEV::DeviceArg device;
    clockGraphicView *view;
    QGraphicsScene *scene;
    // Every node a wire can join, by element name; boxes are scenery only.
    QHash<QString, Item *> items;
    QList<QPair<QString, QString>> connections;
    QList<NetItem *> nets;
    QHash<QString, QString> labels;
    QList<NoteItem *> notes;
    // Checked while the notes are shown.
    QAction *labelsAction;

    // Where the file dialog of saveImageAs() starts until the user has saved
    // somewhere: the page's "Create In" directory.
    void proposeSaveDirectory(const QString &dir);

public slots:
    // Asks for a file name and saves the drawing there.
    void saveImageAs();
    void showLabels(bool shown);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void place();
    void placeTier(const schematic::TierLayout &layout);
    void initConnection();
    void route();
    void placeNotes();
    void addItem(Item *item, const QString &key, const QPointF &pos);

    // Where the last image was saved; the next file dialog starts there.
    QString m_saveDirectory;
    bool m_saved = false;
};

} // namespace IPSERDESIP
