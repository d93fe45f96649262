// How a burn's status is shown, the same on every page that burns: the state as the box's title,
// the part done as a bar, the speed as a text. Main thread.
#pragma once

#include <QVariantMap>

class QGroupBox;
class QLabel;
class QProgressBar;

class BurnProgress
{
public:
    // The widgets must outlive this.
    BurnProgress(QGroupBox *progressBox, QProgressBar *progressIndicator, QLabel *progressLabel);

    // Shows a status map (DRStatus… keys) of a burn that goes on or is done.
    void show(const QVariantMap &status);

    // The burn failed, for that reason.
    void showFailed(const QString &errorText);

    // Back to nothing, with that title.
    void reset(const QString &title);

private:
    QGroupBox *m_box;
    QProgressBar *m_indicator;
    QLabel *m_label;
};
