#include "Session.h"

#include "Preferences.h"

namespace {

const QString isWorkingKey = QStringLiteral("IsWorking");

}

void Session::setWorking(bool working)
{
    Preferences::setValue(isWorkingKey, working);
}

bool Session::isWorking()
{
    return Preferences::value(isWorkingKey).toBool();
}
