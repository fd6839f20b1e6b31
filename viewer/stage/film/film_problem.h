// SPDX-License-Identifier: Apache-2.0
// Why there is no film, or no more of it, in words for the user.
#pragma once

#include <QString>

// Of the system's error (errno) for a film at this path: what was wrong and what to do.
QString filmProblem(int number, const QString& path);
