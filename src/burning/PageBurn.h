// The burn of a page: at most one runs that the page shows. Watches it, and gives back the
// recorder when it ends, also that of an aborted one that ends when a newer runs. Main thread.
#pragma once

#include "DRBurn.h"

#include <QObject>
#include <QVariantMap>

struct DRNotification;

class PageBurn : public QObject
{
    Q_OBJECT

public:
    // Makes a burn and forgets the last one; it is not running before watch().
    DRBurn &make(const DRDevice &device);

    // Counts as running from now on. The recorder's media reservation and exclusive access are
    // held by the page and released when the burn ends.
    void watch();

    [[nodiscard]] DRBurn &burn() { return m_burn; }
    [[nodiscard]] bool isRunning() const { return m_isRunning; }

Q_SIGNALS:
    // A status map (DRStatus… keys) of a burn that goes on.
    void progressed(const QVariantMap &status);

    // Whether it is done; else why it failed. The recorder is released after this.
    void ended(bool isDone, const QString &errorText);

private:
    void burnStatus(const DRNotification &notification);

    DRBurn m_burn;
    bool m_isRunning = false;
};
