// The page of the companies over the real service, root signed in, with what tests do on it. Main
// thread.
#pragma once

#include "BLSync.h"
#include "CompanyViewController.h"
#include "ServiceFixture.h"
#include "Session.h"

#include <QComboBox>
#include <QDialog>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>

class CompanyPage
{
public:
    // A fresh page and a service with nobody but root's company.
    void makeNew();
    void close() { m_page.reset(); }
    [[nodiscard]] const ServiceFixture &service() const { return m_service; }

    // A company that passes all checks.
    [[nodiscard]] static CompanyJson sample(const QString &name, const QString &registered = {});
    // The company of that name as it is stored.
    [[nodiscard]] static CompanyJson stored(const char *name);
    [[nodiscard]] static UserxJson userOf(const char *name, const QString &companyID);
    static void signIn(const char *name, const QString &companyID);

    template <typename Control>
    [[nodiscard]] Control *control(const QString &name) const
    {
        return m_page->findChild<Control *>(name);
    }
    template <typename Control>
    [[nodiscard]] Control *control(const char *name) const
    {
        return control<Control>(QLatin1StringView(name));
    }
    void click(const char *name) const
    {
        QTest::mouseClick(control<QWidget>(name), Qt::LeftButton);
    }
    // As a person chooses it.
    void choose(const QString &popUp, int index) const;
    void choose(const char *popUp, const char *title) const;

    [[nodiscard]] bool show() const;
    void hide() const { m_page->hide(); }
    [[nodiscard]] bool openDirectory() const;
    // Waits for what the page asks the service.
    [[nodiscard]] bool isReady(const char *control) const;
    [[nodiscard]] QStringList column(int column) const;
    // By the Return key; the panel, null where none comes.
    [[nodiscard]] QDialog *openPanel(int row) const;
    [[nodiscard]] QDialog *panel() const { return control<QDialog>("profilePanel"); }

private:
    ServiceFixture m_service;
    std::unique_ptr<CompanyViewController> m_page;
};
