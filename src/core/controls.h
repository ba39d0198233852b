#pragma once

// Controls as every window makes them: named as in the code, so tests find
// them, and with an accessible name a screen reader reads (a caption without
// its access-key marker).

#include <QAccessible>
#include <QCheckBox>
#include <QEvent>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

namespace lexicove {

namespace detail {

// Tells assistive technology which entry of a list box is current each time
// the list takes the focus. Qt reports that focus on the list alone ("Options.
// List with 4 items."), so a screen reader would not say where the player is
// in it; a focus report for the current entry, as a move in the list gives,
// makes it say the entry. It goes out once Qt's own report for the list,
// which follows the focus event, is out.
class CurrentEntryTeller final : public QObject {
public:
    using QObject::QObject;

    static void tell(QAbstractItemView *list)
    {
        const QModelIndex current = list->currentIndex();
        QAccessibleInterface *view = QAccessible::queryAccessibleInterface(list);
        QAccessibleTableInterface *table = view ? view->tableInterface() : nullptr;
        QAccessibleInterface *entry =
            current.isValid() && table ? table->cellAt(current.row(), 0) : nullptr;
        if (!entry || !list->hasFocus())
            return;
        QAccessibleEvent focus(list, QAccessible::Focus);
        focus.setChild(view->indexOfChild(entry));
        QAccessible::updateAccessibility(&focus);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::FocusIn && QAccessible::isActive()) {
            auto *list = static_cast<QAbstractItemView *>(watched);
            QTimer::singleShot(0, list, [list] { tell(list); });
        }
        return false;
    }
};

} // namespace detail

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

// Makes a list view a single-selection list box whose accessible name is
// what it holds, and which says its current entry on taking the focus.
inline void setUpList(QAbstractItemView *list, const QString &name, const QString &holds)
{
    list->setObjectName(name);
    list->setAccessibleName(holds);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->installEventFilter(new detail::CurrentEntryTeller(list));
}

inline QListWidget *makeList(QWidget *parent, const QString &name, const QString &holds)
{
    auto *list = new QListWidget(parent);
    setUpList(list, name, holds);
    return list;
}

} // namespace lexicove
