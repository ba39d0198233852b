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

    static void tell(QListWidget *list)
    {
        const QListWidgetItem *item = list->currentItem();
        QAccessibleInterface *view = QAccessible::queryAccessibleInterface(list);
        QAccessibleTableInterface *table = view ? view->tableInterface() : nullptr;
        QAccessibleInterface *entry = item && table ? table->cellAt(list->row(item), 0) : nullptr;
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
            auto *list = static_cast<QListWidget *>(watched);
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

// A single-selection list box; what it holds is its accessible name. On
// taking the focus it says its current entry.
inline QListWidget *makeList(QWidget *parent, const QString &name, const QString &holds)
{
    auto *list = new QListWidget(parent);
    list->setObjectName(name);
    list->setAccessibleName(holds);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->installEventFilter(new detail::CurrentEntryTeller(list));
    return list;
}

} // namespace lexicove
