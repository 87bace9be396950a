// SPDX-License-Identifier: MIT
#include "views/graphicsscene.h"

namespace IPSERDESIP {

GraphicsScene::GraphicsScene(QObject *parent)
    : QGraphicsScene(parent)
{}

void GraphicsScene::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    QGraphicsScene::mousePressEvent(event);
}

} // namespace IPSERDESIP
