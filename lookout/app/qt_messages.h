// SPDX-License-Identifier: Apache-2.0
// Qt's own warnings, in the same log as all others.
#pragma once

namespace Lookout {

// From now on Qt's messages go to zu::log under the category "qt".
void sendQtMessagesToLog();

}  // namespace Lookout
