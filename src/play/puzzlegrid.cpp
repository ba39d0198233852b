#include "play/puzzlegrid.h"

#include <QAccessibleWidget>
#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>

#include <algorithm>

namespace lexicove {

namespace {

const QString kPuzzleName = QStringLiteral("Puzzle");

// Each letter column is at least 200 twips wide (a twip is 1/1440 inch).
constexpr double kLetterColumnTwips = 200.0;
constexpr double kTwipsPerInch = 1440.0;

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

// A scroll bar of the grid: it moves with the cursor, and without a value
// interface Qt's bridges to assistive technology pass none of its changes on.
class SilentScrollBar final : public QAccessibleWidget {
public:
    explicit SilentScrollBar(QWidget *bar) : QAccessibleWidget(bar, QAccessible::ScrollBar) {}
};

bool inPuzzleGrid(const QObject *object)
{
    for (; object; object = object->parent())
        if (qobject_cast<const PuzzleGrid *>(object))
            return true;
    return false;
}

QAccessibleInterface *puzzleGridInterface(const QString &className, QObject *object)
{
    if (className == QLatin1String(PuzzleGrid::staticMetaObject.className()))
        if (auto *grid = qobject_cast<PuzzleGrid *>(object))
            return new PuzzleGridAccessible(grid);
    if (className == QLatin1String(QScrollBar::staticMetaObject.className()))
        if (auto *bar = qobject_cast<QScrollBar *>(object); bar && inPuzzleGrid(bar))
            return new SilentScrollBar(bar);
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
    setItemDelegate(new LetterDelegate(this));
    // Scroll bars made after the factory, which gives them no value to tell.
    setHorizontalScrollBar(new QScrollBar(Qt::Horizontal));
    setVerticalScrollBar(new QScrollBar(Qt::Vertical));
    // Large letters scroll smoothly, and the cursor's cell comes whole into view.
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setMinimumSectionSize(1);
    m_baseFont = font();
}

void PuzzleGrid::setZoom(int percent)
{
    m_zoom = percent;
    QFont letters = m_baseFont;
    if (m_baseFont.pointSizeF() > 0)
        letters.setPointSizeF(m_baseFont.pointSizeF() * percent / 100.0);
    else
        letters.setPixelSize(qRound(m_baseFont.pixelSize() * percent / 100.0));
    setFont(letters);
    horizontalHeader()->setFont(letters);
    verticalHeader()->setFont(letters);

    QFont bold = letters;
    bold.setBold(true);
    const QFontMetrics boldMetrics(bold);
    const int headerMargin =
        style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, horizontalHeader());
    const int cellMargin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
    int width = qRound(kLetterColumnTwips / kTwipsPerInch * logicalDpiX() * percent / 100.0);
    width = std::max(width, boldMetrics.horizontalAdvance(QLatin1Char('M')) + 2 * cellMargin);
    for (int c = 0; c < columnCount(); ++c)
        if (const QTableWidgetItem *number = horizontalHeaderItem(c))
            width =
                std::max(width, boldMetrics.horizontalAdvance(number->text()) + 2 * headerMargin);
    // The default size is every section's: setting it resizes them all.
    horizontalHeader()->setDefaultSectionSize(width);
    verticalHeader()->setDefaultSectionSize(boldMetrics.height() +
                                            std::max(4, boldMetrics.height() / 4));
    // The scroll bars' ranges first, or the scroll to the cursor stops short.
    updateGeometries();
    scrollTo(currentIndex());
}

QSize PuzzleGrid::sizeFor(int rows, int columns) const
{
    const int frame = 2 * frameWidth();
    return {verticalHeader()->sizeHint().width() +
                columns * horizontalHeader()->defaultSectionSize() + frame,
            horizontalHeader()->sizeHint().height() +
                rows * verticalHeader()->defaultSectionSize() + frame};
}

void PuzzleGrid::resizeEvent(QResizeEvent *event)
{
    QTableWidget::resizeEvent(event);
    // However the window changes, the cursor's cell stays in view.
    if (currentIndex().isValid())
        scrollTo(currentIndex());
}

PuzzleGrid::CellMarks PuzzleGrid::marksAt(const QModelIndex &index) const
{
    return m_marks && index.isValid() ? m_marks(index.row() + 1, index.column() + 1) : CellMarks();
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

LetterDelegate::LetterDelegate(PuzzleGrid *grid) : QStyledItemDelegate(grid), m_grid(grid) {}

void LetterDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (!marks(index).found)
        return;
    // A found letter stands on a light mix of the highlight colour into the
    // background, in bold: the cursor's full highlight still stands out, and
    // the text colour keeps its contrast in a high-contrast theme too.
    const QColor base = option->palette.color(QPalette::Base);
    const QColor highlight = option->palette.color(QPalette::Highlight);
    constexpr float kTint = 0.4f;
    option->backgroundBrush =
        QColor::fromRgbF(base.redF() + (highlight.redF() - base.redF()) * kTint,
                         base.greenF() + (highlight.greenF() - base.greenF()) * kTint,
                         base.blueF() + (highlight.blueF() - base.blueF()) * kTint);
    option->font.setBold(true);
}

void LetterDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                           const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    if (!marks(index).pending)
        return;
    // The first mark is framed in the text colour, which shows on the plain
    // background, on a found word's tint and under the cursor alike.
    const int width = std::max(2, option.rect.height() / 10);
    painter->save();
    painter->setPen(QPen(option.palette.color(QPalette::Text), width, Qt::SolidLine, Qt::SquareCap,
                         Qt::MiterJoin));
    painter->setBrush(Qt::NoBrush);
    const qreal inset = width / 2.0;
    painter->drawRect(QRectF(option.rect).adjusted(inset, inset, -inset, -inset));
    painter->restore();
}

} // namespace lexicove
