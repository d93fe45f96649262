// What libburn says while this lives. libburn has one queue of messages for the whole program, and
// whoever empties it takes from all: here every listener gets every message. Any thread.
#pragma once

#include <QList>
#include <QMutex>
#include <QString>

#include <deque>

class LibburnMessages
{
public:
    struct Message
    {
        int code = 0;     // as in libburn's list of codes
        int severity = 0; // rising
        QString text;
    };

    // Initializes libburn at the first call.
    LibburnMessages();
    ~LibburnMessages();
    LibburnMessages(const LibburnMessages &) = delete;
    LibburnMessages &operator=(const LibburnMessages &) = delete;

    // From now on nobody gets messages of that code, or everybody does again: they do not tell
    // which drive they are about.
    static void setMuted(int code, bool muted);

    // Has libburn begin anew, with no drive in its list. Only while none is open, on the thread
    // that serves the drives.
    static void restart();

    // Held by who uses libburn on any other thread.
    [[nodiscard]] static QMutex &besideDrives();

    // False where libburn could not be initialized.
    [[nodiscard]] static bool isReady();

    // All messages since the listener was made or was last forgetting.
    [[nodiscard]] QList<Message> all() const;
    void forget();

    [[nodiscard]] bool contains(int code) const { return count(code) > 0; }
    [[nodiscard]] qsizetype count(int code) const;

    // What tells most of a failure: the first of the worst; empty where there was no complaint.
    [[nodiscard]] QString complaint() const;

private:
    static void drain();

    mutable QList<Message> m_messages;
};
