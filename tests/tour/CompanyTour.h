// The part of the tour in which a company changes its profile, and root looks through the directory
// of all companies and changes one of them, each in a session of the program. Main thread.
#pragma once

#include "TourSteps.h"

class CompanyTour : public TourSteps
{
public:
    using TourSteps::TourSteps;

    // A company's user; root is there already.
    static void runSessions(const QString &shots, const QString &user, const QString &password);

private:
    void changeProfile() const;
    void lookThroughDirectory() const;
    void changeCompany() const;
    void openProfile() const;
};
