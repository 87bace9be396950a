// SPDX-License-Identifier: MIT
#pragma once

#include "plugin/serdesip_global.h"

#include <QComboBox>

namespace IPSERDESIP {

// The protocol chooser's box. Its popup is an M_TreeComboBoxWidget, whose
// mousepress(bool) is connected to onmousepress: a press on a folder or on a
// greyed row swallows the one hide that follows, so the popup stays open.
class SERDESIP_TEST_EXPORT M_ComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit M_ComboBox(QWidget *parent = nullptr);

    void hidePopup() override;

    bool m_hide = true;

public slots:
    void onmousepress(bool hide);
};

} // namespace IPSERDESIP
