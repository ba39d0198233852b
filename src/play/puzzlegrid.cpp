#include "play/puzzlegrid.h"

#include <QAccessibleWidget>

namespace lexicove {

namespace {

const QString kPuzzleName = QStringLiteral("Puzzle");

// What assistive technology sees of the grid: one focusable pane, named,
// described by the cursor's place on request, and without children.
class PuzzleGridAccessible final : public QAccessibleWidget {
public:
    explicit PuzzleGridAccessible(PuzzleGrid *grid) : QAccessibleWidget(grid, QAccessible::Pane) {}

    QString text(QAccessible::Text t) const override
    {
        const auto *grid = static_cast<const PuzzleGrid *>(widget());
        switch (t) {
        case QAccessible::Name:
            return grid->accessibleName();
        case QAccessible::Description:
            return grid->whereText();
        default:
            return QString();
        }
    }
    int childCount() const override { return 0; }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
};

QAccessibleInterface *puzzleGridInterface(const QString &className, QObject *object)
{
    if (className == QLatin1String(PuzzleGrid::staticMetaObject.className()))
        if (auto *grid = qobject_cast<PuzzleGrid *>(object))
            return new PuzzleGridAccessible(grid);
    return nullptr;
}

} // namespace

PuzzleGrid::PuzzleGrid(QWidget *parent) : QTableWidget(parent)
{
    // Once per run, before any screen reader asks about a grid.
    static const bool installed = [] {
        QAccessible::installFactory(puzzleGridInterface);
        return true;
    }();
    Q_UNUSED(installed);
    setAccessibleName(kPuzzleName);
}

QString PuzzleGrid::currentLetter() const
{
    const QTableWidgetItem *cell = currentItem();
    return cell ? cell->text().trimmed() : QString();
}

QString PuzzleGrid::whereText() const
{
    if (!m_tellPlace || currentRow() < 0 || currentColumn() < 0)
        return QString();
    return QStringLiteral("row %1, column %2").arg(currentRow() + 1).arg(currentColumn() + 1);
}

void PuzzleGrid::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    // The letter is asked for first: scrolling the cursor into view (a
    // tenth of a millisecond and more on a large puzzle) comes after it.
    if (current.isValid()) {
        m_tellPlace = true;
        emit cursorMoved(current.row() + 1, current.column() + 1);
    }
    // The table's own version would tell assistive technology that the cell
    // took the focus; the view's does the rest.
    QAbstractItemView::currentChanged(current, previous);
}

void PuzzleGrid::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    // Likewise without the table's "cell selected" events.
    QAbstractItemView::selectionChanged(selected, deselected);
}

void PuzzleGrid::focusInEvent(QFocusEvent *event)
{
    m_tellPlace = false;
    QTableWidget::focusInEvent(event);
    emit focusEntered();
}

void PuzzleGrid::focusOutEvent(QFocusEvent *event)
{
    QTableWidget::focusOutEvent(event);
    emit focusLeft();
}

} // namespace lexicove
