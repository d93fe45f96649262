// What outlives a run of the program and concerns every page. For now: whether a job works.
// State lies in the preference store. Main thread.
#pragma once

class Session
{
public:
    // Whether a burn, an erasure or an image is being made; cleared at every launch.
    static void setWorking(bool working);
    [[nodiscard]] static bool isWorking();
};
