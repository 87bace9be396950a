// SPDX-License-Identifier: MIT
#include "protocol/m_treecomboboxwidget.h"

#include "protocol/baseprotocol.h"

#include <QHeaderView>
#include <QIcon>
#include <QMouseEvent>

#include <algorithm>

namespace IPSERDESIP {

namespace {

const char FOLDER_ICON[] = ":/coregen/image/folder_close.png";
const char MODULE_ICON[] = ":/coregen/image/module.png";
// Every protocol lists it first; the tree does not show it.
const char TOP_CATEGORY[] = "Serdes";

void makeGrey(QTreeWidgetItem *item)
{
    const QBrush grey(Qt::gray, Qt::SolidPattern);
    item->setForeground(0, grey);
    item->setForeground(1, grey);
}

} // namespace

M_TreeComboBoxWidget::M_TreeComboBoxWidget(QWidget *parent)
    : QTreeWidget(parent)
{
    setColumnCount(2);
}

M_TreeComboBoxWidget::~M_TreeComboBoxWidget()
{
    for (BaseProtocol *protocol : qAsConst(m_cores))
        delete protocol;
}

QTreeWidgetItem *M_TreeComboBoxWidget::folderFor(const QStringList &category)
{
    QTreeWidgetItem *parent = invisibleRootItem();
    for (const QString &name : category) {
        if (name == QLatin1String(TOP_CATEGORY))
            continue;
        QTreeWidgetItem *found = nullptr;
        for (int i = 0; i < parent->childCount() && !found; ++i) {
            QTreeWidgetItem *child = parent->child(i);
            if (child->type() == FolderItem && child->text(0) == name)
                found = child;
        }
        if (!found) {
            found = new QTreeWidgetItem(FolderItem);
            found->setIcon(0, QIcon(QLatin1String(FOLDER_ICON)));
            found->setText(0, name);
            parent->addChild(found);
            sortTree(parent);
        }
        parent = found;
    }
    return parent;
}

void M_TreeComboBoxWidget::insertIPCoreList(BaseProtocol *protocol, const DEV::DeviceArg &device)
{
    m_cores.append(protocol);

    auto *item = new QTreeWidgetItem(ProtocolItem);
    item->setIcon(0, QIcon(QLatin1String(MODULE_ICON)));
    item->setText(0, protocol->name());
    item->setText(1, protocol->version());
    item->setData(0, ProtocolRole, QVariant::fromValue(protocol));
    // Without a device identifier nothing can be decided, so nothing is
    // offered.
    const bool supported = !device.id.isEmpty() && protocol->isSupported(device);
    if (!supported) {
        makeGrey(item);
        item->setToolTip(0, device.id.isEmpty()
                                ? tr("No device is chosen, so no protocol can be placed.")
                                : tr("%1 is not supported on the %2 family of %3.")
                                      .arg(protocol->name(), device.family, device.name));
    }
    item->setData(0, PickableRole, supported);
    addRow(folderFor(protocol->category()), item);
    header()->resizeSection(1, header()->sectionSize(1) - 10);
}

void M_TreeComboBoxWidget::insertIPCore(QString name, QStringList category, QString version,
                                        QString summaryFile)
{
    auto *item = new QTreeWidgetItem(HelpOnlyItem);
    item->setIcon(0, QIcon(QLatin1String(MODULE_ICON)));
    item->setText(0, name);
    item->setText(1, version);
    makeGrey(item);
    item->setToolTip(
        0, tr("The plug-in of %1 is not installed: only its help page can be read.").arg(name));
    item->setData(0, ProtocolRole, summaryFile);
    item->setData(0, PickableRole, false);
    addRow(folderFor(category), item);
    header()->resizeSection(0, header()->sectionSize(0) + 30);
}

void M_TreeComboBoxWidget::insertUnloaded(const QString &fileName, const QString &reason)
{
    auto *item = new QTreeWidgetItem(HelpOnlyItem);
    item->setIcon(0, QIcon(QLatin1String(MODULE_ICON)));
    item->setText(0, fileName);
    makeGrey(item);
    item->setToolTip(0, tr("The plug-in %1 could not be loaded: %2").arg(fileName, reason));
    item->setData(0, ProtocolRole, QString());
    item->setData(0, PickableRole, false);
    addRow(invisibleRootItem(), item);
    header()->resizeSection(0, header()->sectionSize(0) + 30);
}

void M_TreeComboBoxWidget::addRow(QTreeWidgetItem *parent, QTreeWidgetItem *item)
{
    parent->addChild(item);
    m_items.append(item);
    sortTree(parent);
    header()->resizeSections(QHeaderView::ResizeToContents);
    update();
}

BaseProtocol *M_TreeComboBoxWidget::getIPCoreByName(const QString &name)
{
    for (BaseProtocol *protocol : qAsConst(m_cores)) {
        if (protocol->name() == name)
            return protocol;
    }
    return nullptr;
}

BaseProtocol *M_TreeComboBoxWidget::getIPCoreById(const QString &id)
{
    for (BaseProtocol *protocol : qAsConst(m_cores)) {
        if (protocol->id() == id)
            return protocol;
    }
    return nullptr;
}

// The combo box closes its popup on the release that follows a press; the
// signal tells it beforehand whether that close may happen, so that a folder
// or a greyed row leaves the popup open.
void M_TreeComboBoxWidget::mousePressEvent(QMouseEvent *event)
{
    QTreeWidgetItem *item = itemAt(event->pos());
    if (!item) {
        emit mousepress(false);
        return;
    }
    if (item->type() == FolderItem) {
        item->setExpanded(!item->isExpanded());
        emit mousepress(false);
        return;
    }
    if (!item->data(0, PickableRole).toBool()) {
        emit mousepress(false);
        return;
    }
    switch (item->type()) {
    case ProtocolItem:
        emit mousepress(true);
        return;
    case HelpOnlyItem:
        emit mousepress(false);
        return;
    default:
        QTreeWidget::mousePressEvent(event);
        return;
    }
}

void sortTree(QTreeWidgetItem *parent)
{
    QList<QTreeWidgetItem *> children = parent->takeChildren();
    std::stable_sort(children.begin(), children.end(),
                     [](const QTreeWidgetItem *a, const QTreeWidgetItem *b) {
                         if (a->type() != b->type())
                             return a->type() < b->type();
                         return QString::compare(a->text(0), b->text(0), Qt::CaseSensitive) < 0;
                     });
    parent->addChildren(children);
}

} // namespace IPSERDESIP
