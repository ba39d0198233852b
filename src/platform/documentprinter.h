#pragma once

#include "platform/printer.h"

#include <QList>
#include <QString>

namespace lexicove {

// A printer that keeps what it is given, page by page, and hands the whole
// document over only at endDocument(), so that an abandoned document leaves
// nothing behind. It keeps the current position and the page breaks; what a
// text measures, and where the finished document goes, is up to the kind of
// printer.
//
// A page holds the texts placed on it, each with its position and font size,
// and how far down the page its lines reached (`bottom`), so that empty lines
// count too. A text placed left of the page's edge starts at the edge.
class DocumentPrinter : public Printer {
public:
    struct Placed {
        double x = 0;
        double y = 0;
        double points = 0;
        QString text;
    };
    struct Page {
        QList<Placed> texts;
        double bottom = 0;
    };

    explicit DocumentPrinter(double startPoints) : m_points(startPoints) {}

    void setCopies(int copies) override { m_copies = copies; }
    void setFontName(const QString &name) override { m_fontName = name; }
    void setFontSize(double points) override { m_points = points; }
    double currentX() const override { return m_x; }
    double currentY() const override { return m_y; }
    void setCurrentX(double x) override { m_x = x; }
    void print(const QString &text, bool stayOnLine) override;
    void newPage() override;
    void abandonDocument() override;

    const QList<Page> &pages() const { return m_pages; }
    // The pages worth printing: a page left empty at the end (a new page
    // with nothing after it) would only cost a sheet.
    static qsizetype PagesToPrint(const QList<Page> &pages);
    int copies() const { return m_copies; }
    const QString &fontName() const { return m_fontName; }
    double fontSize() const { return m_points; }

private:
    QList<Page> m_pages{Page{}};
    int m_copies = 1;
    QString m_fontName;
    double m_points;
    double m_x = 0;
    double m_y = 0;
};

} // namespace lexicove
