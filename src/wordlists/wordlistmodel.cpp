#include "wordlists/wordlistmodel.h"

#include <limits>

namespace lexicove {

TextFormat WordListModel::load(QByteArray bytes)
{
    beginResetModel();
    const TextFormat format = DetectTextFormat(bytes);
    if (format.byteOrderMark)
        bytes.remove(0, kByteOrderMark.size());
    m_body = std::move(bytes);
    m_encoding = format.encoding;
    m_added.clear();
    m_entries = EntrySpans(m_body);
    endResetModel();
    return format;
}

int WordListModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    return static_cast<int>(qMin<qsizetype>(size(), std::numeric_limits<int>::max()));
}

QVariant WordListModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole || !index.isValid() || index.row() >= size())
        return QVariant();
    return entry(index.row());
}

QString WordListModel::entry(qsizetype row) const
{
    const ByteSpan &e = m_entries.at(static_cast<size_t>(row));
    if (e.size < 0)
        return m_added.at(e.start);
    return DecodeText(QByteArrayView(m_body).sliced(e.start, e.size), m_encoding);
}

void WordListModel::append(const QString &word)
{
    const int row = rowCount();
    beginInsertRows(QModelIndex(), row, row);
    m_entries.push_back({m_added.size(), -1});
    m_added.append(word);
    endInsertRows();
}

void WordListModel::removeAt(qsizetype row)
{
    beginRemoveRows(QModelIndex(), static_cast<int>(row), static_cast<int>(row));
    m_entries.erase(m_entries.begin() + row);
    endRemoveRows();
}

} // namespace lexicove
