#include "BurnProgress.h"

#include "DRKeys.h"
#include "DRStatus.h"
#include "FormatTools.h"
#include "Localized.h"

#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>

namespace {

constexpr double percent = 100.0;
constexpr qint64 kilobyte = 1024;

}

BurnProgress::BurnProgress(QGroupBox *progressBox, QProgressBar *progressIndicator,
                           QLabel *progressLabel)
    : m_box(progressBox)
    , m_indicator(progressIndicator)
    , m_label(progressLabel)
{
}

void BurnProgress::show(const QVariantMap &status)
{
    const QString state = status.value(DRStatusStateKey).toString();
    m_box->setToolTip({});
    if (const std::optional<QString> title = DRStatus::titleOfState(state))
        m_box->setTitle(*title);
    if (state != DRStatusStateTrackWrite && state != DRStatusStateVerifying)
        return;
    const QVariantMap info = status.value(DRStatusProgressInfoKey).toMap();
    const double speed = info.value(DRStatusProgressCurrentKPS).toDouble();
    const double factor = info.value(DRStatusProgressCurrentXFactor).toDouble();
    if (speed > 0 && factor > 0)
        m_label->setText(QString::asprintf(" [ %.0fX - ", factor)
                         + MiscTool::convertBytes(static_cast<qint64>(speed) * kilobyte)
                         + QStringLiteral("/S ]"));
    m_indicator->setValue(qRound(status.value(DRStatusPercentCompleteKey).toDouble() * percent));
}

void BurnProgress::showFailed(const QString &errorText)
{
    reset(localized("Localizable", "Failed"));
    m_box->setToolTip(errorText);
}

void BurnProgress::reset(const QString &title)
{
    m_box->setTitle(title);
    m_box->setToolTip({});
    m_indicator->setValue(0);
    m_label->clear();
}
