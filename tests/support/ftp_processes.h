// SPDX-License-Identifier: Apache-2.0
// The processes of FTP servers that this process has started.
#pragma once

#include <sys/types.h>

#include <vector>

// Of all sessions that run now, in no order. Thread-safe.
std::vector<pid_t> ftpProcesses();
