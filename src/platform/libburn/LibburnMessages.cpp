#include "LibburnMessages.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <set>
#include <sys/types.h>

#include <libburn/libburn.h>

namespace {

std::mutex mutex;
std::deque<QList<LibburnMessages::Message> *> listeners;
std::set<int> mutedCodes;
std::atomic<bool> isLost = false; // it did not begin anew

// From here on a message is a complaint: "SORRY" of libburn's severities.
constexpr int sorry = 0x60000000;

// Said of every failed burn, and what was sent to the drive: neither tells why.
bool saysNothing(const LibburnMessages::Message &message)
{
    constexpr int burnRunFailed = 0x2010b;
    return message.code == burnRunFailed || message.text.startsWith(QLatin1String("CDB="))
           || message.text.startsWith(QLatin1String("--- SG_IO"))
           || message.text.startsWith(QLatin1String("Attempted"));
}

// libburn keeps only fatal messages unless told otherwise, and a refusal is not one.
bool initialize()
{
    std::array<char, 4> queued{"ALL"};
    std::array<char, 6> printed{"NEVER"};
    std::array<char, 1> prefix{""};
    return burn::burn_initialize() > 0
           && burn::burn_msgs_set_severities(queued.data(), printed.data(), prefix.data()) > 0;
}

}

bool LibburnMessages::isReady()
{
    static const bool ready = initialize();
    return ready && !isLost;
}

QMutex &LibburnMessages::besideDrives()
{
    static QMutex mutex;
    return mutex;
}

void LibburnMessages::restart()
{
    const QMutexLocker others(&besideDrives());
    const std::lock_guard lock(mutex);
    drain();
    burn::burn_finish();
    isLost = !initialize();
}

void LibburnMessages::setMuted(int code, bool muted)
{
    const std::lock_guard lock(mutex);
    drain(); // what was said before is for all
    if (muted)
        mutedCodes.insert(code);
    else
        mutedCodes.erase(code);
}

LibburnMessages::LibburnMessages()
{
    if (!isReady())
        return;
    const std::lock_guard lock(mutex);
    drain(); // what was said before is not for this one
    listeners.push_back(&m_messages);
}

LibburnMessages::~LibburnMessages()
{
    const std::lock_guard lock(mutex);
    std::erase(listeners, &m_messages);
}

void LibburnMessages::drain()
{
    std::array<char, BURN_MSGS_MESSAGE_LEN> text{};
    std::array<char, 80> severity{};
    std::array<char, 4> all{"ALL"};
    int code = 0;
    int systemError = 0;
    while (burn::burn_msgs_obtain(all.data(), &code, text.data(), &systemError, severity.data())
           > 0) {
        if (mutedCodes.contains(code))
            continue;
        int number = 0;
        burn::burn_text_to_sev(severity.data(), &number, 0);
        for (QList<Message> *listener : listeners)
            listener->append({code, number, QString::fromLocal8Bit(text.data())});
    }
}

QList<LibburnMessages::Message> LibburnMessages::all() const
{
    if (!isReady())
        return {};
    const std::lock_guard lock(mutex);
    drain();
    return m_messages;
}

void LibburnMessages::forget()
{
    const std::lock_guard lock(mutex);
    drain();
    m_messages.clear();
}

qsizetype LibburnMessages::count(int code) const
{
    const QList<Message> messages = all();
    return std::ranges::count(messages, code, &Message::code);
}

QString LibburnMessages::complaint() const
{
    QList<Message> messages = all();
    messages.removeIf([](const Message &m) { return m.severity < sorry || saysNothing(m); });
    const auto worst = std::ranges::max_element(messages, {}, &Message::severity);
    return worst == messages.end() ? QString() : worst->text.trimmed();
}
