#pragma once

#include <QHash>
#include <QSet>
#include <QString>

namespace lexicove {

// A folder's sound files, found by name the way a file system that ignores
// case finds them, on every platform: the file named exactly as asked comes
// first (a teacher's own "P.wav"), then one whose name differs only by case
// ("p.wav" for "P.wav", "σ.wav" for "Σ.wav").
//
// The folder is listed once, when the object is made; a lookup is then two
// hash look-ups. Names are compared case-folded and in composed form, so
// that "ä" typed as "a" and a combining mark finds "ä.wav" too. When several
// files fold to the same name, the one already in that form wins ("s.wav"
// over "ſ.wav" and "S.wav", "σ.wav" over "ς.wav").
class SoundFolder {
public:
    SoundFolder() = default;
    explicit SoundFolder(const QString &folder);

    // The path of the file that plays for name ("P.wav"), or the empty
    // text when the folder has none.
    QString find(const QString &name) const;

    // name as compared: composed, every character case-folded ("İ" as "i",
    // the lower-case letter a Turkish reader pairs it with).
    static QString fold(const QString &name);

private:
    QString m_folder;
    QSet<QString> m_names;            // as listed
    QHash<QString, QString> m_folded; // folded name -> name as listed
};

// The file that plays for path (a folder, a separator and a name), by the
// rule above; empty when there is none. Lists the folder.
QString FindSoundFile(const QString &path);

} // namespace lexicove
