#pragma once

#include "platform/platform.h"
#include "platform/programfiles.h"
#include "platform/qtsound.h" // the sound player lives on its own

#include <QHash>
#include <QPointer>

#include <memory>
#include <optional>
#include <random>

class QSettings;

namespace lexicove {

// Replaces the file at path with bytes, whole or not at all: a write that
// fails (a full disk, a file size limit, a folder that can't be written)
// leaves the old file as it was and says why in error.
bool WriteWholeFile(const QString &path, const QByteArray &bytes, QString &error);

class QtDialogs final : public Dialogs {
public:
    MessageResult message(QWidget *parent, const QString &prompt, MessageButtons buttons,
                          const QString &title) override;
    QString input(QWidget *parent, const QString &prompt, const QString &title,
                  const QString &defaultText) override;
};

class SystemClock final : public Clock {
public:
    quint32 tickCount() override;
    double secondsSinceMidnight() override;
    void callAfter(int ms, QObject *receiver, std::function<void()> action) override;
};

class SystemRandom final : public Random {
public:
    void seed(double value) override;
    double next() override;

private:
    std::mt19937_64 m_engine{0};
};

class QtSystemInfo final : public SystemInfo {
public:
    QString systemDirectory() override;
    // The sounds' folder: the executable's own, or an installed game's data
    // folder (programfiles.h).
    QString programFolder() override;
    QString wordListFolder() override;
    bool screenReaderRunning() override;

private:
    const ProgramFiles &programFiles();

    std::optional<ProgramFiles> m_programFiles; // found once per run
    QString m_wordListFolder;                   // found once per run
};

class QtFiles final : public Files {
public:
    QStringList list(const QString &folder, const QString &extension) override;
    bool readPieces(const QString &path, const PieceReader &take, QString &error) override;
    bool write(const QString &path, const QByteArray &bytes, QString &error) override;
    bool remove(const QString &path, QString &error) override;
};

// The player's settings file, an INI file in the user's configuration folder
// (Lexicove/Lexicove.ini), or the file at path.
class QtSettings final : public Settings {
public:
    explicit QtSettings(const QString &path = QString());
    ~QtSettings() override;
    int number(const QString &key, int fallback) override;
    bool setNumber(const QString &key, int value, QString &error) override;

private:
    std::unique_ptr<QSettings> m_settings;
};

} // namespace lexicove
