// Who is signed in, with what permissions, and whether a job works. State lies in the preference
// store, so it outlives a run of the program; every write is on the disk at once. Main thread.
#pragma once

#include "Records.h"

#include <optional>

class Session
{
public:
    // Whether an audio or data disc is burned, a disc erased or an image made; cleared at every
    // launch.
    static void setWorking(bool working);
    [[nodiscard]] static bool isWorking();

    // The sign-in name, which stays when the session is cleared; null before the first one.
    static void setLoggedUserx(const QString &userx);
    [[nodiscard]] static QString getLoggerUser();

    // The signed-in user's row as the service sent it; its name becomes the sign-in name.
    static void setLoggedUserDict(const QVariantMap &dict);
    [[nodiscard]] static std::optional<UserxJson> getLoggedUserxJson();

    // "0" is for full rights; in any other text a permission is looked for.
    static void setPermission(const QString &permission);
    [[nodiscard]] static QString getPermission();
    [[nodiscard]] static bool hasPermission(const QString &permission);

    [[nodiscard]] static bool isRoot();
    [[nodiscard]] static bool isDemo();

    // Signs out.
    static void clear();
};
