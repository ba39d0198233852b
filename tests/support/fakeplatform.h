#pragma once

// Scripted doubles of the platform for the tests: dialogs answer from a
// script and record what was shown, sounds are recorded instead of played,
// the tick counter and the random draws are set by the test, and the files
// are real files in a temporary folder with failures that can be injected.

#include "fakeprinter.h"
#include "platform/brailledisplay.h"
#include "platform/platform.h"
#include "platform/qtplatform.h"

#include <QList>
#include <QPointer>
#include <QSet>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <random>

namespace lexicove::test {

struct ShownDialog {
    enum class Kind { Message, Input };
    Kind kind = Kind::Message;
    QString prompt;
    QString title;
    MessageButtons buttons = MessageButtons::Ok;
    QString defaultText;
};

class FakeDialogs final : public Dialogs {
public:
    MessageResult message(QWidget *parent, const QString &prompt, MessageButtons buttons,
                          const QString &title) override;
    QString input(QWidget *parent, const QString &prompt, const QString &title,
                  const QString &defaultText) override;

    // Every dialog shown, in order.
    QList<ShownDialog> shown;
    // Answers to Yes/No questions and replies to input boxes, used in order.
    QList<MessageResult> answers;
    QStringList replies;
    // Questions that found no scripted answer. A Yes/No question then gets No
    // and an input box its default text, so that no loop can run forever.
    QStringList unexpected;
    // Runs as each dialog is shown, before it is answered (to look at focus or
    // windows while the "modal" box is up).
    std::function<void(const ShownDialog &)> onShow;

    QStringList prompts() const;
    QString lastPrompt() const;
    void clear();
};

class FakeSound final : public Sound {
public:
    void prepare(const QStringList &paths) override { prepared.append(paths); }
    void play(const QString &path) override { played.append(path); }
    // The file names (without folder) of the sounds played, in order.
    QStringList names() const;
    // The file each sound played is found in by the real player's lookup,
    // in order; empty for the system's default sound.
    QStringList found() const;
    QStringList played;
    // The paths of each prepare, in order.
    QList<QStringList> prepared;
};

// Time stands still until the test moves it on: advance() runs the delayed
// calls that fall due, in order.
class FakeClock final : public Clock {
public:
    quint32 tickCount() override { return ticks; }
    double secondsSinceMidnight() override { return seconds; }
    void callAfter(int ms, QObject *receiver, std::function<void()> action) override;
    void advance(quint32 ms);
    quint32 ticks = 1000;
    double seconds = 0.0;

private:
    struct Call {
        quint32 due;
        QPointer<QObject> receiver;
        std::function<void()> action;
    };
    QList<Call> m_calls;
};

// Returns the scripted values first; after them, values from a fixed-seed
// generator so that tests that do not care about draws still run the same
// way every time.
class FakeRandom final : public Random {
public:
    void seed(double value) override { seeds.append(value); }
    double next() override;
    QList<double> script;
    QList<double> seeds;

private:
    std::mt19937_64 m_engine{20261122};
};

class FakeSystemInfo final : public SystemInfo {
public:
    QString systemDirectory() override { return systemDir; }
    QString programFolder() override { return sounds.isEmpty() ? folder : sounds; }
    QString wordListFolder() override { return folder; }
    bool screenReaderRunning() override { return screenReader; }
    QString systemDir = QStringLiteral("/usr/lib");
    bool screenReader = true;
    QString folder;
    QString sounds; // the program folder, where the sounds lie, when not folder
};

// Real files, with failures injected by path.
class FakeFiles final : public Files {
public:
    QStringList list(const QString &folder, const QString &extension) override;
    bool readPieces(const QString &path, const PieceReader &take, QString &error) override;
    bool write(const QString &path, const QByteArray &bytes, QString &error) override;
    bool remove(const QString &path, QString &error) override;

    QSet<QString> failRead;
    bool failAllWrites = false;
    // A file size limit in bytes for the writes (where the system has one),
    // as a full disk would be: the real write then fails as it flushes.
    qint64 writeLimit = -1;
    // Pieces of this many bytes at most, to try readers on every split.
    qsizetype pieceSize = kPieceSize;
    // How many bytes the readers took before they stopped reading.
    qint64 bytesRead = 0;

private:
    QtFiles m_real;
};

// A real settings file, with failures injected: restart() reads the file
// afresh, as the game's next run would.
class FakeSettings final : public Settings {
public:
    explicit FakeSettings(const QString &path) : m_path(path) { restart(); }
    int number(const QString &key, int fallback) override { return m_real->number(key, fallback); }
    bool setNumber(const QString &key, int value, QString &error) override;
    void restart() { m_real = std::make_unique<QtSettings>(m_path); }

    bool failWrites = false;

private:
    QString m_path;
    std::unique_ptr<QtSettings> m_real;
};

// Braille cells as a test writes them: each letter, then "^" on the cursor,
// "7" or "8" for an added dot.
QString feel(const BrailleCells &cells);

// A braille display of kWidth cells that records what it is given; ready
// comes at once with each take.
class FakeBrailleDisplay final : public BrailleDisplay {
public:
    static constexpr int kWidth = 40;

    void take(QWidget *, Events events) override;
    void show(const BrailleCells &cells) override;
    void release() override;
    // A key of the display, which reaches the game only while it holds it.
    void press(Key key);
    // What the display shows now: nothing once the game has given it back.
    BrailleCells shown() const { return m_held ? m_shown : BrailleCells(); }

private:
    bool m_held = false;
    Events m_events;
    BrailleCells m_shown;
};

// A whole platform around one temporary folder that serves as the program
// folder and the word list folder.
struct FakePlatform {
    FakePlatform();
    QString path(const QString &name) const;
    // Writes bytes to a file of the folder, as another program would.
    void writeFile(const QString &name, const QByteArray &bytes) const;
    QByteArray readFile(const QString &name) const;

    QTemporaryDir dir;
    FakeDialogs dialogs;
    FakeSound sound;
    FakeClock clock;
    FakeRandom random;
    FakeSystemInfo system;
    FakeFiles files;
    FakeFileDialogs fileDialogs;
    FakeSettings settings{dir.filePath(QStringLiteral("settings.ini"))};
    FakeBrailleDisplay braille;
    Platform platform{dialogs, sound, clock, random, system, files, fileDialogs, settings, braille};
};

} // namespace lexicove::test
