// What the stores of the repository have in common: where they lie, and how a copy takes its place
// in one only when it is complete. Any thread.
#pragma once

#include "Result.h"

#include <QTemporaryDir>

namespace RepositoryFolder {

// The folder, made when it is missing.
[[nodiscard]] QString made(const QString &folder);

// The folder that holds all stores.
[[nodiscard]] QString repository();

// Where a copy is made before it takes its place: beside the stores, whose content is what lies in
// them, and on their file system. What a save that was killed left here goes after a day.
class Incoming
{
public:
    explicit Incoming(const QString &folder);
    ~Incoming();
    Incoming(const Incoming &) = delete;
    Incoming &operator=(const Incoming &) = delete;

    [[nodiscard]] bool isValid() const { return m_folder.isValid(); }
    [[nodiscard]] QString errorString() const { return m_folder.errorString(); }
    // Nothing is there yet.
    [[nodiscard]] QString copy() const { return m_folder.filePath(QStringLiteral("copy")); }

    // Puts the complete copy in the old one's place, in one step where the file system can.
    [[nodiscard]] Result<> takePlace(const QString &place);

private:
    [[nodiscard]] Result<> takePlaceInTwoSteps(const QString &place);

    QTemporaryDir m_folder;
    bool m_kept = false; // it holds the only copy
};

}
