// Stands where a page will be that this version does not have, and says so in a line.
#pragma once

#include "Page.h"

class ComingPage : public Page
{
    Q_OBJECT

public:
    explicit ComingPage(const QString &name);
};
