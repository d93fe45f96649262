// Saves what a page holds as a record of the repository: asks for its name, as often as it takes,
// copies off the main thread, and tells when it is there. Main thread.
#pragma once

#include "AudioRepository.h"

#include <QObject>

#include <functional>

class RecordSaver : public QObject
{
    Q_OBJECT

public:
    // The page whose window the sheets stand on.
    explicit RecordSaver(QWidget *page);

    [[nodiscard]] bool isSaving() const { return m_isSaving; }

    // Asks for a name; content is called for what is to be saved (but for the name) when there is
    // one.
    void save(const std::function<AudioRepository::Record()> &content) { ask(content, {}); }

Q_SIGNALS:
    void isSavingChanged(bool isSaving);

private:
    using Content = std::function<AudioRepository::Record()>;

    void ask(const Content &content, const QString &hint);
    void chosen(const Content &content, const QString &name);
    void ended(bool wasStopped);

    QWidget *m_page;
    bool m_isSaving = false;
};
