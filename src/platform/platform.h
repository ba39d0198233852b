#pragma once

// The operations the game asks of the system it runs on. Each is a small
// interface with one real implementation (qtplatform.h) and one scripted
// double for the tests (tests/support/fakeplatform.h). Windows and logic get
// them through their constructors; nothing reaches the system any other way.

#include "platform/brailledisplay.h"
#include "platform/printer.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <functional>

class QObject;
class QWidget;

namespace lexicove {

inline const QString kAppTitle = QStringLiteral("Lexicove");

enum class MessageButtons { Ok, YesNo };
enum class MessageResult { Ok, Yes, No };

// Modal message and input boxes.
class Dialogs {
public:
    virtual ~Dialogs() = default;
    // A message box with no icon. An empty title shows the application's
    // title, "Lexicove". With Yes and No, Yes comes first and is the default.
    virtual MessageResult message(QWidget *parent, const QString &prompt,
                                  MessageButtons buttons = MessageButtons::Ok,
                                  const QString &title = QString()) = 0;
    // Returns the text as typed, or the empty text when cancelled.
    virtual QString input(QWidget *parent, const QString &prompt, const QString &title,
                          const QString &defaultText) = 0;
};

// Sounds play in the background; a new sound cuts off the one still playing.
// A name is found as a file system that ignores case finds it: the file
// named exactly so, else one whose name differs only by case ("p.wav" for
// "P.wav"); with neither, the system's default sound plays.
class Sound {
public:
    virtual ~Sound() = default;
    // Gets the sounds at paths ready to play, in the background, and lets go
    // of those an earlier call made ready that are not among them. A play
    // never waits for them; a sound not prepared still plays.
    virtual void prepare(const QStringList &paths) = 0;
    virtual void play(const QString &path) = 0;
};

class Clock {
public:
    virtual ~Clock() = default;
    // Milliseconds since some fixed moment, as a 32-bit count that wraps.
    virtual quint32 tickCount() = 0;
    // Seconds since midnight, with their fraction.
    virtual double secondsSinceMidnight() = 0;
    // Runs action once, ms milliseconds from now, in the calling thread; not
    // at all if receiver is gone by then.
    virtual void callAfter(int ms, QObject *receiver, std::function<void()> action) = 0;
};

// The program's one random generator.
class Random {
public:
    virtual ~Random() = default;
    virtual void seed(double value) = 0;
    // A uniform value r with 0 <= r < 1.
    virtual double next() = 0;
    // A whole number from 1 to n, drawn as Int(r * n) + 1.
    int draw(int n) { return static_cast<int>(next() * n) + 1; }
};

class SystemInfo {
public:
    virtual ~SystemInfo() = default;
    // The operating system's system folder; empty when it can't be had.
    virtual QString systemDirectory() = 0;
    // The program folder, where the sounds lie: the folder of the program
    // itself, or an installed game's data folder.
    virtual QString programFolder() = 0;
    // Where the word lists are kept: the folder of the program itself when it
    // is a program folder the user can write, otherwise the user's
    // application data folder.
    virtual QString wordListFolder() = 0;
    // Whether a screen reader is listening to the game now.
    virtual bool screenReaderRunning() = 0;
};

// Only regular files (and links to them) are files here: a folder, a named
// pipe or a device is never listed, and reading one fails at once, so that
// nothing the game opens can block it.
class Files {
public:
    // What readPieces hands over at a time, at most.
    static constexpr qsizetype kPieceSize = 1 << 20;
    // Told each piece of a file in order; returns false to read no further.
    using PieceReader = std::function<bool(QByteArrayView piece)>;

    virtual ~Files() = default;
    // The names (not paths) of the files in folder whose extension is
    // `extension` (".wds") in any case, sorted without regard to case.
    virtual QStringList list(const QString &folder, const QString &extension) = 0;
    // On failure the operations below return false and put the reason, in
    // plain words, in error.
    //
    // Reads the file from its start, piece by piece, until its end or until
    // take returns false; a file is never held whole unless take keeps it.
    virtual bool readPieces(const QString &path, const PieceReader &take, QString &error) = 0;
    // The whole file.
    bool read(const QString &path, QByteArray &bytes, QString &error)
    {
        bytes.clear();
        return readPieces(
            path,
            [&bytes](QByteArrayView piece) {
                bytes.append(piece);
                return true;
            },
            error);
    }
    // Replaces the file whole or not at all: a failed write leaves the old
    // file as it was.
    virtual bool write(const QString &path, const QByteArray &bytes, QString &error) = 0;
    virtual bool remove(const QString &path, QString &error) = 0;
};

// What the game remembers between runs: whole numbers by name (the size the
// puzzle is drawn at).
class Settings {
public:
    virtual ~Settings() = default;
    // The number stored under key, or fallback when none is.
    virtual int number(const QString &key, int fallback) = 0;
    // Stores value under key for the next runs at once. On failure returns
    // false and says, naming the file, why in error; the value still holds
    // for this run.
    virtual bool setNumber(const QString &key, int value, QString &error) = 0;
};

// Everything above, handed to each window together.
struct Platform {
    Dialogs &dialogs;
    Sound &sound;
    Clock &clock;
    Random &random;
    SystemInfo &system;
    Files &files;
    FileDialogs &fileDialogs;
    Settings &settings;
    BrailleDisplay &braille;
};

// Joins a folder and a file name with the platform's separator.
QString joinPath(const QString &folder, const QString &name);

// 8-bit text for an embosser: the ANSI code page on Windows, Latin-1
// elsewhere. Files are written by the rule of textencoding.h instead.
QByteArray encode8Bit(const QString &text);

} // namespace lexicove
