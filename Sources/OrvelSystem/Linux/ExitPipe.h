#pragma once

#include <cstdint>

/// A pipe that hangs up as soon as the kernel starts to end a process.
///
/// A pidfd reports the end of a process only after the kernel has closed all of its files, which
/// takes up to a second for one that watches files, and the windows may stay on the screen for as
/// long. The kernel closes the files of a process in descending order, so the pipe has a number
/// above all others.
namespace OrvelSystem::ExitPipe {

/// Above the numbers of all other files, and below the usual limit of 1024.
inline constexpr int number = 1000;

/// Keeps the only writing end in this process until it ends or runs another program. To be called
/// once, before the process opens files. Does nothing if the limit of open files is lower.
void keep();
/// Opens the reading end of the pipe that a process of this user keeps. The caller closes it.
/// Negative if there is none.
int openOf(std::int64_t pid);

}  // namespace OrvelSystem::ExitPipe
