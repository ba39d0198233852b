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
// server, and on a busy or stuck server that wait is long. A requested name
// is found as a file system that ignores case would find it (soundfolder.h).
// The sound thread loads the files that prepare() names, ahead of their
// first play, and keeps their samples until a later prepare() leaves them
// out; each play starts a fresh effect on them, since an effect played again
// can fall silent. A file never prepared is loaded when it is first played.
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

    // Returns at once; the sound thread lists the folders afresh (a file
    // added or replaced since is found) and loads the files.
    void prepare(const QStringList &paths) override;

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
    // For the tests: how many requests the sound thread has handled, and the
    // file the last one played (the one it would play without an audio
    // device); empty when it gave the default sound.
    int handledCount() const;
    QString lastFile() const;

private:
    QThread *m_thread = nullptr;
    QObject *m_context = nullptr;          // lives in m_thread; requests run there
    std::unique_ptr<SoundPlayer> m_player; // its effects are used only in m_thread
    bool m_shutDown = false;
};

} // namespace lexicove
