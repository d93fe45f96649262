// The part of the tour in which people write to each other, one session of the program after the
// other: a company asks, root answers it and publishes a notification, and the company finds both
// when it signs in again. Main thread.
#pragma once

#include "TourSteps.h"

class MessagesTour : public TourSteps
{
public:
    // All sessions, each with a window of its own. Root is there already, and so is the company's
    // user, in Europe.
    static void runSessions(const QString &shots, const QString &user, const QString &password);

private:
    using TourSteps::TourSteps;

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
