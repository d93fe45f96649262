// audio-disc FOLDER FILE…: burns audio files onto a CD-RW in a new virtual recorder in the folder,
// without verification, and prints the most memory that it took. For measuring.

#include "VirtualRecorder.h"

#include <QFile>
#include <QTextStream>

#include <sys/resource.h>

namespace {

Result<> burn(const QString &folder, const QList<DRTrack> &tracks)
{
    const auto recorder = VirtualRecorder::create(folder);
    if (!recorder)
        return recorder.failure();
    BurnRequest request;
    request.tracks = tracks;
    JobReport report([](const QVariantMap &) {}, {});
    return recorder.value()->burn(request, report);
}

}

int main(int argc, char **argv)
{
    QTextStream errors(stderr);
    if (argc < 3) {
        errors << "usage: audio-disc FOLDER FILE...\n";
        return 2;
    }
    QList<DRTrack> tracks;
    for (int i = 2; i < argc; ++i)
        tracks.append(DRTrack::trackForAudioFile(QFile::decodeName(argv[i])));
    const Result<> done = burn(QFile::decodeName(argv[1]), tracks);
    if (!done) {
        errors << done.error() << '\n';
        return 1;
    }
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    QTextStream(stdout) << (usage.ru_maxrss + 1023) / 1024 << " MiB\n";
    return 0;
}
