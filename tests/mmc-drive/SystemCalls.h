// The system's own calls, past those that this library puts in their place.
#pragma once

#include <string>
#include <sys/stat.h>

namespace mmc::system {

int open(const std::string &path, int flags, unsigned mode);
int stat(const char *path, struct ::stat *status);
int fstat(int file, struct ::stat *status);
int usleep(unsigned microseconds);

}
