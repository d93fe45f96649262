// The part of the tour in which people write to each other, one session of the program after the
// other: a company asks, root answers it and publishes a notification, and the company finds both
// when it signs in again. Main thread.
#pragma once

#include "TourSteps.h"

class MessagesTour : public TourSteps
{
public:
    // All sessions, each with a window of its own. Root is there already.
    static void runSessions(const QString &shots);

private:
    using TourSteps::TourSteps;

    using Steps = void (MessagesTour::*)();
    static void runSession(const QString &shots, Steps steps);
    void signIn(const QString &user, const QString &password) const;

    void ask();
    void answerAndPublish();
    void seeThem();

    void answerQuestion() const;
    void publish() const;
    // Waits until the list shows that many rows.
    void waitForRows(const char *table, int rows) const;
    void openRow(const char *table) const;
    void save() const;
};
