#include "play/frmlist.h"

#include "core/controls.h"

#include <QCloseEvent>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace lexicove {

FrmList::FrmList()
{
    setObjectName(QStringLiteral("frmList"));
    lstList = makeList(this, QStringLiteral("lstList"), QStringLiteral("List"));

    cmdOK = makeButton(this, QStringLiteral("cmdOK"), QStringLiteral("&OK"));
    cmdOK->setDefault(true);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lstList);
    layout->addWidget(cmdOK);
    setTabOrder(lstList, cmdOK);

    connect(cmdOK, &QPushButton::clicked, this, &FrmList::cmdOK_Click);
}

void FrmList::fill(const QStringList &entries)
{
    lstList->clear();
    lstList->addItems(entries);
    if (lstList->count() > 0)
        lstList->setCurrentRow(0);
}

void FrmList::cmdOK_Click()
{
    hide();
    if (m_afterOk)
        m_afterOk();
}

void FrmList::reject()
{
    cmdOK_Click();
}

void FrmList::closeEvent(QCloseEvent *event)
{
    // Hidden, never closed: the window is kept for the next use.
    event->ignore();
    cmdOK_Click();
}

} // namespace lexicove
