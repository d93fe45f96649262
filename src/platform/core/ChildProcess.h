// What a program that this one starts must not take with it.
#pragma once

namespace ChildProcess {

// For the child-process modifier of a QProcess: the program starts with its standard streams alone.
// Libraries leave their files open to children, and a drive is in use as long as anybody has it.
void inheritStreamsOnly();

}
