#pragma once

#include "platform/platform.h"

#include <QHash>
#include <QPointer>

#include <random>

class QSoundEffect;

namespace lexicove {

class QtDialogs final : public Dialogs {
public:
    MessageResult message(QWidget *parent, const QString &prompt, MessageButtons buttons,
                          const QString &title) override;
    QString input(QWidget *parent, const QString &prompt, const QString &title,
                  const QString &defaultText) override;
};

// Plays .wav files through QSoundEffect, each loaded once and kept ready so
// that starting a sound never waits on the file. A missing file beeps.
class QtSound final : public Sound {
public:
    QtSound();
    ~QtSound() override;
    QtSound(const QtSound &) = delete;
    QtSound &operator=(const QtSound &) = delete;

    // Loads the given files ahead of their first play.
    void preload(const QStringList &paths);
    void play(const QString &path) override;
    // Stops and releases every effect; must run before the application object
    // goes, or Qt's sample cache can deadlock at exit.
    void shutdown();

private:
    QSoundEffect *effectFor(const QString &path);

    QHash<QString, QSoundEffect *> m_effects; // null: the file is missing
    QSoundEffect *m_current = nullptr;
};

class SystemClock final : public Clock {
public:
    quint32 tickCount() override;
    double secondsSinceMidnight() override;
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
    QString programFolder() override;
    QString wordListFolder() override;

private:
    QString m_wordListFolder; // found once per run
};

class QtFiles final : public Files {
public:
    QStringList list(const QString &folder, const QString &extension) override;
    bool read(const QString &path, QByteArray &bytes, QString &error) override;
    bool write(const QString &path, const QByteArray &bytes, QString &error) override;
    bool remove(const QString &path, QString &error) override;
};

} // namespace lexicove
