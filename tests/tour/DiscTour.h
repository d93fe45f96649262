// The part of the tour that looks at the recorder, erases the disc in it, and makes disc images of
// a folder. Main thread.
#pragma once

#include "TourSteps.h"

class DiscTour : public TourSteps
{
public:
    // The folder to make images of.
    DiscTour(ViewController &window, const QString &shots, const QString &folder);

    void run();

private:
    void showRecorder() const;
    void erase() const;
    void makeImage(const QString &module, const QString &extension) const;

    QString m_folder;
};
