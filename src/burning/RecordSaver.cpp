#include "RecordSaver.h"

#include "Alerts.h"
#include "Background.h"
#include "Localized.h"
#include "RecordNamePanel.h"

RecordSaver::RecordSaver(QWidget *page)
    : m_page(page)
{
}

void RecordSaver::ask(const Content &content, const QString &hint)
{
    const QString proposal =
        localized("BurnAudio", "Record") + QString::number(AudioRepository::count() + 1);
    auto *panel = new RecordNamePanel(proposal, hint, m_page->window());
    connect(panel, &RecordNamePanel::chosen, this,
            [this, content](const QString &name) { chosen(content, name); });
    panel->open();
}

void RecordSaver::chosen(const Content &content, const QString &name)
{
    if (!AudioRepository::isName(name)) {
        ask(content, localized("BurnAudio", "A record needs a name that a folder can have."));
        return;
    }
    if (AudioRepository::exists(name)) {
        MiscTool::showAlert(localized("BurnAudio", "The record has existed."),
                            localized("BurnAudio", "Please change a different record name."));
        ask(content, {});
        return;
    }
    AudioRepository::Record record = content();
    record.name = name;
    m_isSaving = true;
    Q_EMIT isSavingChanged(true);
    runJobInBackground(
        this,
        [record](const std::stop_token &stop) {
            if (const Result<> saved = AudioRepository::save(record, stop); !saved)
                qWarning().noquote() << "the record was not saved:" << saved.error();
            return stop.stop_requested();
        },
        [this](bool wasStopped) { ended(wasStopped); });
}

void RecordSaver::ended(bool wasStopped)
{
    m_isSaving = false;
    Q_EMIT isSavingChanged(false);
    if (!wasStopped)
        MiscTool::showAlert(localized("BurnAudio", "Exported successfully"),
                            localized("BurnAudio", "The record has been exported to repository."));
}
