#pragma once

#include <QString>

namespace lexicove {

// Where the game's own files lie, worked out from the executable's folder.
//
// A program folder (the build's bin folder, a Windows or portable install)
// holds the sounds and the starter word lists beside the executable. An
// installed game keeps them in its data folder instead, found relative to the
// executable (<prefix>/share/lexicove for <prefix>/games/lexicove), so that an
// install works under any prefix. Which of the two it is, is told by the
// sounds: a program folder is one that has them.
struct ProgramFiles {
    QString executableFolder;
    QString sounds;       // the letter and effect sounds
    QString starterLists; // the word lists a new player starts with
    bool programFolder = false;
};

ProgramFiles FindProgramFiles(const QString &executableFolder);

// The data folder an installed game has beside the executable's folder.
QString InstalledDataFolder(const QString &executableFolder);

// The folder that keeps the player's word lists: a program folder the user
// can write in (the build's own folder, a portable install); otherwise
// userFolder. An installed game never writes beside its executable, even when
// it could (run as root). userFolder is made on first use and given the
// starter lists then and only then, so that a list the player deleted never
// comes back and a new version of the game never touches the player's lists.
QString PrepareWordListFolder(const ProgramFiles &files, const QString &userFolder);

} // namespace lexicove
