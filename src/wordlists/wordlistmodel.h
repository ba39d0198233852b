#pragma once

#include "platform/textencoding.h"
#include "wordlists/wordlistformat.h"

#include <QAbstractListModel>
#include <QByteArray>
#include <QStringList>

#include <vector>

namespace lexicove {

// The entries of the list being edited, in order, as the model of the
// editor's list box.
//
// A list loaded from a file keeps the file's bytes and, per entry, where it
// lies in them (16 bytes an entry); an entry is decoded only when it is shown
// or saved. So a list of 4 million words takes the file's size and some 70 MB
// more, not a string object apiece. Words added since are kept as texts.
class WordListModel final : public QAbstractListModel {
public:
    // Replaces the entries with those of a whole file (by the editor's
    // reader) and returns the format it was read in.
    TextFormat load(QByteArray bytes);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;

    qsizetype size() const { return static_cast<qsizetype>(m_entries.size()); }
    QString entry(qsizetype row) const;
    void append(const QString &word);
    void removeAt(qsizetype row);

private:
    QByteArray m_body; // the file less its byte order mark
    TextEncoding m_encoding = TextEncoding::EightBit;
    // Runs of m_body; an added word where size is negative, its index in
    // m_added then in start.
    std::vector<ByteSpan> m_entries;
    QStringList m_added;
};

} // namespace lexicove
