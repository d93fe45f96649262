#include "ChildProcess.h"

#include <linux/close_range.h>
#include <unistd.h>

// Until the program begins, Qt still needs some of the others.
void ChildProcess::inheritStreamsOnly()
{
    constexpr unsigned behindStreams = STDERR_FILENO + 1;
    ::close_range(behindStreams, ~0U, CLOSE_RANGE_CLOEXEC);
}
