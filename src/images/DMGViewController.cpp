#include "DMGViewController.h"

DMGViewController::DMGViewController()
    : ImageViewController({QStringLiteral("dmg"), {QStringLiteral("-hfs")}})
{
}

DMGViewController *DMGViewController::getViewController()
{
    return new DMGViewController;
}
