#pragma once

// What a screen reader would be told: every accessibility event the program
// sends while a recorder lives, as Qt hands it to the platform's bridge.

#include <QAccessible>
#include <QList>
#include <QPointer>
#include <QString>

namespace lexicove::test {

struct AccessEvent {
    QAccessible::Event type;
    QPointer<QObject> object;
    int child = -1;
    QString name; // of the object (or its child) that took the focus
};

// Records the events until destroyed, one recorder at a time. Qt sends
// events only while an accessibility bridge is active (see
// tests/platform/with_atspi.sh).
class AccessRecorder {
public:
    AccessRecorder()
    {
        events().clear();
        m_previous = QAccessible::installUpdateHandler(&AccessRecorder::record);
    }
    ~AccessRecorder() { QAccessible::installUpdateHandler(m_previous); }
    AccessRecorder(const AccessRecorder &) = delete;
    AccessRecorder &operator=(const AccessRecorder &) = delete;

    static QList<AccessEvent> &events()
    {
        static QList<AccessEvent> list;
        return list;
    }
    // The name of what took the focus last; empty when nothing did.
    static QString lastFocus()
    {
        for (auto it = events().crbegin(); it != events().crend(); ++it)
            if (it->type == QAccessible::Focus)
                return it->name;
        return QString();
    }

private:
    static void record(QAccessibleEvent *event)
    {
        AccessEvent entry{event->type(), event->object(), event->child(), QString()};
        if (event->type() == QAccessible::Focus)
            if (QAccessibleInterface *iface = event->accessibleInterface())
                entry.name = iface->text(QAccessible::Name);
        events().append(entry);
    }

    QAccessible::UpdateHandler m_previous = nullptr;
};

} // namespace lexicove::test
