#pragma once

#include "platform/platform.h"

#include <QString>
#include <QStringList>

#include <memory>

class QObject;
class QThread;

namespace lexicove {

class SoundPlayer;

// Plays .wav files through QSoundEffect, on a thread of its own.
//
// The calling thread only posts requests, so a key press is never held up by
// the file or the audio device: opening an audio stream waits on the sound
// server, and on a busy or stuck server that wait is long. The sound thread
// loads each file once, when it is first named (preloadFolder() names every
// sound of the program folder at start), and keeps its samples for the rest
// of the run; each play starts a fresh effect on them, since an effect
// played again can fall silent.
//
// Requests are coalesced: when several plays arrive while the sound thread is
// busy, only the newest is played, since each would cut off the one before.
// A file that is missing or not a readable wave file gives the system's
// default sound (QApplication::beep(), in the application's thread).
class QtSound final : public Sound {
public:
    QtSound();
    ~QtSound() override;
    QtSound(const QtSound &) = delete;
    QtSound &operator=(const QtSound &) = delete;

    // Loads every .wav file of folder, in the sound thread, ahead of its
    // first play. Any other name in that folder is then known to be missing.
    void preloadFolder(const QString &folder);

    // Returns at once; the sound starts in the sound thread.
    void play(const QString &path) override;

    // Stops every sound, releases the effects and ends the sound thread;
    // later calls do nothing. Must run before the application object goes,
    // or Qt's sample cache can deadlock at exit. Takes about 100 ms once a
    // sound has played (the sound server's last answers must arrive before
    // the program ends), and at most a few seconds on a stuck sound server.
    void shutdown();

    // For the tests and the benchmark: blocks until the sound thread has
    // handled every request posted so far and every effect has finished
    // loading, or until timeoutMs passes. Returns false on a timeout.
    bool waitUntilIdle(int timeoutMs);
    // For the tests: how many requests the sound thread has handled.
    int handledCount() const;

private:
    QThread *m_thread = nullptr;
    QObject *m_context = nullptr;          // lives in m_thread; requests run there
    std::unique_ptr<SoundPlayer> m_player; // its effects are used only in m_thread
    bool m_shutDown = false;
};

} // namespace lexicove
