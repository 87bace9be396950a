// SPDX-License-Identifier: MIT
#include "protocol/m_combobox.h"

namespace IPSERDESIP {

M_ComboBox::M_ComboBox(QWidget *parent)
    : QComboBox(parent)
{}

void M_ComboBox::hidePopup()
{
    if (m_hide) {
        QComboBox::hidePopup();
        return;
    }
    m_hide = true;
}

void M_ComboBox::onmousepress(bool hide)
{
    m_hide = hide;
}

} // namespace IPSERDESIP
