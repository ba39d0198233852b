#include "platform/soundfolder.h"

#include <QDir>
#include <QFileInfo>

#include <string>

namespace lexicove {

namespace {

// LATIN CAPITAL LETTER I WITH DOT ABOVE has no simple case folding; its
// lower-case letter is "i".
constexpr char32_t kCapitalIWithDot = 0x0130;

} // namespace

SoundFolder::SoundFolder(const QString &folder) : m_folder(folder)
{
    const QStringList names = QDir(folder).entryList(QDir::Files | QDir::Readable, QDir::Name);
    for (const QString &name : names) {
        m_names.insert(name);
        const QString key = fold(name);
        if (!m_folded.contains(key) || name == key)
            m_folded.insert(key, name);
    }
}

QString SoundFolder::find(const QString &name) const
{
    if (m_names.contains(name))
        return QDir(m_folder).filePath(name);
    const auto found = m_folded.constFind(fold(name));
    return found == m_folded.cend() ? QString() : QDir(m_folder).filePath(*found);
}

QString SoundFolder::fold(const QString &name)
{
    std::u32string points = name.normalized(QString::NormalizationForm_C).toStdU32String();
    for (char32_t &point : points)
        point = point == kCapitalIWithDot ? U'i' : QChar::toCaseFolded(point);
    return QString::fromStdU32String(points);
}

QString FindSoundFile(const QString &path)
{
    const QFileInfo info(path);
    return SoundFolder(info.path()).find(info.fileName());
}

} // namespace lexicove
