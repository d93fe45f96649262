// Hears of the signals by which the system, a terminal or a person ends the program, so that it can
// end its jobs first. A second SIGINT or SIGTERM ends it at once. One at a time; main thread.
#pragma once

#include <QObject>

class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();
};
