// The sheet that shows the repository: its folders or its images with their sizes, to choose one
// as the source or to delete one. Main thread; sizes are measured off it.
#pragma once

#include "DataRepository.h"

#include <QDialog>

#include <memory>

namespace Ui {
class Repository;
}

class RepositoryPanel : public QDialog
{
    Q_OBJECT

public:
    explicit RepositoryPanel(QWidget *parent);
    ~RepositoryPanel() override;

    // Shows the present content of the kind whose segment is chosen.
    void changeAction();

Q_SIGNALS:
    // A copy was chosen as the source.
    void selected(DataRepository::Kind kind, const QString &path);

    // The user confirmed that a copy of this kind is to be deleted.
    void deleting(DataRepository::Kind kind);

private:
    [[nodiscard]] DataRepository::Kind kind() const;
    [[nodiscard]] int selectedRow() const; // -1 without one

    void reload();
    void measure();
    [[nodiscard]] int numberOfRowsInTableView() const;
    void showSizes(const QList<qint64> &sizes);
    void repositoryDeleteAction();
    void deleted(DataRepository::Kind deletedKind, const QString &name, bool removed);
    void repositorySelectAction();
    void repositoryCancelAction();

    std::unique_ptr<Ui::Repository> m_ui;
    QStringList m_repositoryData;
    std::stop_source m_measuring{std::nostopstate};
};
