// The part of the tour in which a company registers, signs in, changes its security data, and at
// the end recovers its password, one session of the program after the other. Main thread.
#pragma once

#include "TourSteps.h"

class AccountTour : public TourSteps
{
public:
    using TourSteps::TourSteps;

    // The company's sign-in name, and its password once the security data are changed.
    static const QString user;
    static const QString password;

    static void registerCompany(const QString &shots);
    static void recoverPassword(const QString &shots);

private:
    void fillDetails() const;
    void fillMoreDetails() const;
    void signIn(const QString &current) const;
    void changeSecurity() const;
    void findRescue() const;
    void recover() const;

    void type(const char *field, const QString &text) const;
    void answerQuestions(const QString &answer) const;
    void press(const char *button, const char *shownThen) const;
};
