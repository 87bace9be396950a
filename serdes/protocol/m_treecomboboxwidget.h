// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <dev/devicearg.h>

#include <QList>
#include <QStringList>
#include <QTreeWidget>

namespace IPSERDESIP {

class BaseProtocol;

// The drop-down tree of the protocol chooser, and the registry of the loaded
// protocols: folders from each protocol's categories, one row per protocol,
// greyed where the device cannot run it.
class SERDESIP_TEST_EXPORT M_TreeComboBoxWidget : public QTreeWidget
{
    Q_OBJECT

public:
    // QTreeWidgetItem::type() of the three kinds of row; the sort puts them in
    // this order.
    enum ItemType {
        FolderItem = 1001,
        ProtocolItem = 1002,
        // A known protocol whose plug-in is not installed: a help page only;
        // or a plug-in that could not be loaded, which has no page.
        HelpOnlyItem = 1003,
    };
    // Data roles of column 0: the BaseProtocol* of a protocol row, or the
    // help file of a help-only row; and whether the row can be picked.
    enum ItemRole {
        ProtocolRole = Qt::UserRole + 1,
        PickableRole = Qt::UserRole + 2,
    };

    explicit M_TreeComboBoxWidget(QWidget *parent = nullptr);
    ~M_TreeComboBoxWidget() override;

    // Takes ownership of `protocol`. With an empty device identifier every
    // protocol is greyed. A greyed row's tooltip says why.
    void insertIPCoreList(BaseProtocol *protocol, const DEV::DeviceArg &device);
    void insertIPCore(QString name, QStringList category, QString version, QString summaryFile);
    // A greyed row for the plug-in file `fileName` that could not be loaded,
    // its tooltip giving `reason`.
    void insertUnloaded(const QString &fileName, const QString &reason);
    BaseProtocol *getIPCoreByName(const QString &name);
    BaseProtocol *getIPCoreById(const QString &id);

    QList<BaseProtocol *> m_cores;
    QList<QTreeWidgetItem *> m_items;

signals:
    // Whether the popup may close on the hide that follows this press.
    void mousepress(bool hide);

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    QTreeWidgetItem *folderFor(const QStringList &category);
    void addRow(QTreeWidgetItem *parent, QTreeWidgetItem *item);
};

// Orders the children of `parent`, not deeper: folders, protocols, help-only
// rows, each group by the code values of its names. Stable.
SERDESIP_TEST_EXPORT void sortTree(QTreeWidgetItem *parent);

} // namespace IPSERDESIP
