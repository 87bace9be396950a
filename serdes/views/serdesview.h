// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"
#include "protocol/message.h"

#include <dev/devicearg.h>

#include <QMap>
#include <QString>
#include <QWidget>

class QGraphicsScene;

namespace IPSERDESIP {

class GraphicsView;
class SerdesItem;

// The quad floorplan of the SerDes page: the device's quads with their lanes
// and PLLs, filled with the colour of the instance that took them, and above
// them a strip with one tile per instance, in the order of their names. A
// tile's double click, Enter and Delete keys or its menu ask the page to edit
// or delete the instance. Lanes, PLLs and tiles tell in their tooltips what
// runs on them. The view keeps no model: it draws the requests it is handed.
//
// Use: setDevice(), initDisplayView() once; then addItem() for each instance
// the model accepted and deleteItem() before it is released.
class SERDESIP_TEST_EXPORT serdesView : public QWidget
{
    Q_OBJECT

public:
    explicit serdesView(QWidget *parent = nullptr);
    ~serdesView() override;

    void setDevice(const DEV::DeviceArg &device);
    // Draws one quad for the one-quad tiers, two for every other device.
    void initDisplayView();
    // Colours the PLLs and lanes that `m` names with its hue and adds its
    // tile. Names that are no box of the floorplan are skipped. A lane that
    // two instances name shows the one added last; a PLL shows every
    // instance it serves in stripes, in the order of their names.
    void addItem(Message *m);
    // Takes the instance named as `m` off its boxes and removes its tile.
    void deleteItem(Message *m);

    SerdesItem *formStringToPLLItem(const QString &name);
    SerdesItem *formStringToLaneItem(const QString &name);

    GraphicsView *floorplanView;
    GraphicsView *stripView;
    QGraphicsScene *floorplanScene;
    QGraphicsScene *stripScene;
    SerdesItem *q0Qpll[2] = {};
    SerdesItem *q0Lanes[4] = {};
    SerdesItem *q0Cplls[4] = {};
    // Null on a device of one quad.
    SerdesItem *q1Qpll[2] = {};
    SerdesItem *q1Lanes[4] = {};
    SerdesItem *q1Cplls[4] = {};
    QMap<QString, SerdesItem *> editItems;
    // Copies of the requests drawn, in the order they were added.
    QList<Message> placed;
    bool layoutPending = false;
    DEV::DeviceArg device;

signals:
    // Internal: asks for one strip layout pass in the next turn of the event
    // loop.
    void updateEditItemLayout();
    void sigEditItem(const QString &name);
    void sigDeleteItem(const QString &name);

public slots:
    void zoomOut();
    void zoomIn();
    // Asks the user, then tells the page.
    void deleteEditItem(const QString &name);
    void openEditItem(const QString &name);
    // Lays the tiles out side by side in name order.
    void paintEditItem();
    void onPaintEditItemEvent();

private:
    void initQuad0();
    void initQuad1();
    void initQuad(int quad, SerdesItem *qplls[2], SerdesItem *lanes[4], SerdesItem *cplls[4]);
    // Fills and tooltips of the lanes and PLLs from the requests placed.
    void showPlaced();
    void removePlaced(const QString &name);
    static QString instanceText(const Message &m);
    void scaleFloorplan(double step, double limit);
};

} // namespace IPSERDESIP
