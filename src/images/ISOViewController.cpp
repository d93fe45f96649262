#include "ISOViewController.h"

ISOViewController::ISOViewController()
    : ImageViewController({QStringLiteral("iso"), {}})
{
}

ISOViewController *ISOViewController::getViewController()
{
    return new ISOViewController;
}
