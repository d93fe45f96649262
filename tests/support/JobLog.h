// Everything that is reported of one burn or erase. Made before the job is started; main thread.
#pragma once

#include "DRBurn.h"
#include "DRErase.h"

#include <QObject>
#include <QStringList>

class JobLog : public QObject
{
    Q_OBJECT

public:
    explicit JobLog(const DRBurn &burn);
    explicit JobLog(const DRErase &erase);

    // Serve events until the job has ended, or has entered the state. False when that never comes.
    [[nodiscard]] bool waitForEnd() const;
    [[nodiscard]] bool waitForState(const QString &state) const;

    // The states in the order in which they were entered.
    [[nodiscard]] const QStringList &states() const { return m_states; }

    // The part done, as reported each time.
    [[nodiscard]] const QList<double> &fractions() const { return m_fractions; }

private:
    void observe(const QString &notification, const QVariant &job);

    QStringList m_states;
    QList<double> m_fractions;
};
