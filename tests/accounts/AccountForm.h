// What the tests of the account forms share: controls by their names, and lists of checks as data.
// Main thread.
#pragma once

#include "AlertRecorder.h"
#include "BLSync.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

// A control's name and what it gets: a text, an item's number or title, on or off, a date.
using Entries = QList<std::pair<QString, QVariant>>;

// Cases stand in the order of the checks: each tells what the alert says and which control then has
// the focus while all before it are mended, and how it is mended itself.
struct CheckCase
{
    QString message;
    QString help;
    QString focus;
    Entries mend;
};

inline void addCheckColumns(const QList<CheckCase> &cases)
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < cases.size(); ++row)
        QTest::addRow("%d %s", row, qPrintable(cases.at(row).message)) << row;
}

// That the three questions are chosen and answered; with all, rightly.
inline QList<CheckCase> questionCases(bool all)
{
    QList<CheckCase> cases;
    int number = 0;
    for (const char *name : {"first", "second", "third"}) {
        const QString nth = QLatin1StringView(name);
        const QString popUp = QStringLiteral("question%1PopUpButton").arg(++number);
        const QString field = QStringLiteral("answer%1Field").arg(number);
        cases.append({QStringLiteral("The %1 security question cannot be null.").arg(nth),
                      QStringLiteral("Please choose the %1 security question.").arg(nth),
                      popUp,
                      {{popUp, all ? 2 : 1}}});
        if (all)
            cases.append({QStringLiteral("The %1 security question is wrong.").arg(nth),
                          QStringLiteral("Please choose the correct %1 question.").arg(nth),
                          popUp,
                          {{popUp, 1}}});
        cases.append({QStringLiteral("The %1 answer cannot be null.").arg(nth),
                      QStringLiteral("Please enter the %1 answer.").arg(nth),
                      field,
                      {{field, QStringLiteral("answer %1").arg(number)}}});
        if (!all)
            continue;
        cases.last().mend.first().second = QStringLiteral("Answer %1").arg(number);
        cases.append({QStringLiteral("The %1 answer is wrong.").arg(nth),
                      QStringLiteral("Please correct the %1 answer.").arg(nth),
                      field,
                      {{field, QStringLiteral("answer %1").arg(number)}}});
    }
    return cases;
}

class AccountForm
{
public:
    explicit AccountForm(QWidget *page)
        : m_page(page)
    {
    }

    template <typename Control = QWidget>
    [[nodiscard]] Control *control(const QString &name) const
    {
        auto *found = m_page->findChild<Control *>(name);
        if (!found)
            qFatal("no %s", qPrintable(name));
        return found;
    }
    [[nodiscard]] QString text(const char *name) const
    {
        return control<QLineEdit>(QLatin1StringView(name))->text();
    }
    [[nodiscard]] bool isShown(const char *name) const
    {
        return control(QLatin1StringView(name))->isVisible();
    }
    void click(const char *name) const
    {
        QTest::mouseClick(control(QLatin1StringView(name)), Qt::LeftButton);
    }

    // As somebody does who works with the form.
    void fill(const Entries &entries) const
    {
        for (const auto &[name, value] : entries) {
            auto *filled = control(name);
            if (auto *popUp = qobject_cast<QComboBox *>(filled)) {
                popUp->setCurrentIndex(value.typeId() == QMetaType::QString
                                           ? popUp->findText(value.toString())
                                           : value.toInt());
                Q_EMIT popUp->activated(popUp->currentIndex());
            } else if (auto *box = qobject_cast<QCheckBox *>(filled)) {
                if (box->isChecked() != value.toBool())
                    box->click();
            } else if (auto *date = qobject_cast<QDateEdit *>(filled)) {
                date->setDate(value.toDate());
            } else {
                control<QLineEdit>(name)->setText(value.toString());
            }
        }
    }
    void mendUpTo(const QList<CheckCase> &cases, qsizetype row) const
    {
        for (const CheckCase &mended : cases.first(row))
            fill(mended.mend);
    }

    void expect(const char *button, const QString &message, const QString &help) const
    {
        AlertRecorder recorder;
        recorder.expect(message, help);
        click(button);
        QTRY_VERIFY(recorder.isDone());
    }
    // The checks before that row pass, that one does not.
    void fail(const QList<CheckCase> &cases, int row, const char *button) const
    {
        mendUpTo(cases, row);
        const CheckCase &failing = cases.at(row);
        expect(button, failing.message, failing.help);
        QTRY_COMPARE(m_page->window()->focusWidget()->objectName(), failing.focus);
    }

private:
    QWidget *m_page;
};

inline void makeUser(const QString &name, const QString &companyId = {},
                     const QString &password = QStringLiteral("old"))
{
    UserxJson user;
    user.Userx = name;
    user.CompanyID = companyId;
    user.Passwordx = password;
    QVERIFY(BLSyncUserx().insert(user));
}

// The ID that the service gave it.
inline QString makeCompany(CompanyJson company)
{
    if (!BLSyncCompany().insert(company))
        return {};
    return CompanyJson::getJson(
               BLSyncCompany().select(QStringLiteral("Email='") + company.Email + u'\'')->first())
        .ID;
}
