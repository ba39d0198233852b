#include "platform/programfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

// The install's data folder as seen from its executable's folder; the build
// sets it from the install layout.
#ifndef LEXICOVE_DATA_FROM_PROGRAM
#define LEXICOVE_DATA_FROM_PROGRAM "../share/lexicove"
#endif

namespace lexicove {

namespace {

// Every sound set has it, and nothing else is named so.
const QString kWitnessSound = QStringLiteral("mark.wav");

bool holdsSounds(const QString &folder)
{
    return QFileInfo(QDir(folder).filePath(kWitnessSound)).isFile();
}

// A folder is writable when a file can really be made in it (permission bits
// alone don't tell, for example for root or on a read-only mount).
bool canWriteIn(const QString &folder)
{
    QTemporaryFile probe(QDir(folder).filePath(QStringLiteral("lexicove-probe-XXXXXX")));
    return probe.open();
}

} // namespace

QString InstalledDataFolder(const QString &executableFolder)
{
    return QDir::cleanPath(
        QDir(executableFolder).filePath(QStringLiteral(LEXICOVE_DATA_FROM_PROGRAM)));
}

ProgramFiles FindProgramFiles(const QString &executableFolder)
{
    ProgramFiles files;
    files.executableFolder = executableFolder;
    const QString data = InstalledDataFolder(executableFolder);
    const QString installedSounds = QDir(data).filePath(QStringLiteral("sounds"));
    files.programFolder = holdsSounds(executableFolder);
    if (!files.programFolder && holdsSounds(installedSounds)) {
        files.sounds = installedSounds;
        files.starterLists = QDir(data).filePath(QStringLiteral("wordlists"));
        return files;
    }
    // With no sounds anywhere they are still looked for beside the program
    // (each missing one gives the system's default sound), but such a folder
    // is not trusted with the player's lists.
    files.sounds = executableFolder;
    files.starterLists = executableFolder;
    return files;
}

QString PrepareWordListFolder(const ProgramFiles &files, const QString &userFolder)
{
    if (files.programFolder && canWriteIn(files.executableFolder))
        return files.executableFolder;
    if (QFileInfo::exists(userFolder) || !QDir().mkpath(userFolder))
        return userFolder;
    const QDir from(files.starterLists);
    const QDir to(userFolder);
    const QStringList starters = from.entryList({QStringLiteral("*.wds")}, QDir::Files);
    for (const QString &name : starters) {
        // The player's own copy, writable whatever the installed one is.
        const QString copy = to.filePath(name);
        if (QFile::copy(from.filePath(name), copy))
            QFile::setPermissions(copy, QFile::permissions(copy) | QFile::WriteOwner);
    }
    return userFolder;
}

} // namespace lexicove
