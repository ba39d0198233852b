#pragma once

// Controls as every window makes them: named as in the code, so tests find
// them, and with an accessible name a screen reader reads (a caption without
// its access-key marker).

#include <QCheckBox>
#include <QListWidget>
#include <QPushButton>

namespace lexicove {

inline QString spoken(const QString &caption)
{
    return QString(caption).remove(QLatin1Char('&'));
}

inline QPushButton *makeButton(QWidget *parent, const QString &name, const QString &caption)
{
    auto *button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setAccessibleName(spoken(caption));
    return button;
}

inline QCheckBox *makeCheckBox(QWidget *parent, const QString &name, const QString &caption,
                               bool checked = false)
{
    auto *box = new QCheckBox(caption, parent);
    box->setObjectName(name);
    box->setAccessibleName(spoken(caption));
    box->setChecked(checked);
    return box;
}

// A single-selection list box; what it holds is its accessible name.
inline QListWidget *makeList(QWidget *parent, const QString &name, const QString &holds)
{
    auto *list = new QListWidget(parent);
    list->setObjectName(name);
    list->setAccessibleName(holds);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    return list;
}

} // namespace lexicove
