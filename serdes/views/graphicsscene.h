// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QGraphicsScene>
#include <QString>

namespace IPSERDESIP {

// A scene with the tiles' two requests as signals of its own. Nothing emits
// them: the floorplan uses plain scenes and connects each tile to itself.
class SERDESIP_TEST_EXPORT GraphicsScene : public QGraphicsScene
{
    Q_OBJECT

public:
    explicit GraphicsScene(QObject *parent = nullptr);

    QString m_name;

signals:
    void onEditActionClicked(const QString &name);
    void onDelActionClicked(const QString &name);

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
};

} // namespace IPSERDESIP
