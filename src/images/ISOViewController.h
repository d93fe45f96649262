// The page that makes an image for optical discs of a folder. Main thread.
#pragma once

#include "ImageViewController.h"

class ISOViewController : public ImageViewController
{
    Q_OBJECT

public:
    [[nodiscard]] static ISOViewController *getViewController();

private:
    ISOViewController();
};
