// The page that makes a disc image with an HFS+ file system of a folder. Main thread.
#pragma once

#include "ImageViewController.h"

class DMGViewController : public ImageViewController
{
    Q_OBJECT

public:
    [[nodiscard]] static DMGViewController *getViewController();

private:
    DMGViewController();
};
