// The part of the tour that makes an audio CD: synthesises files, adds them, writes their titles in
// two languages, burns, and has another program read the disc's texts back. Main thread.
#pragma once

#include "TourSteps.h"

class AudioTour : public TourSteps
{
public:
    using TourSteps::TourSteps;

    void run();

private:
    [[nodiscard]] QStringList makeFiles() const;
    void addFiles(const QStringList &files) const;
    void writeTexts() const;
    void writeLanguage(const QString &discTitle, const QStringList &titles) const;
    void type(const char *field, const QString &text) const;
    static void readBack();
};
