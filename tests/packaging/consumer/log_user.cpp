// SPDX-License-Identifier: Apache-2.0
#include "zu/log.h"

int main() {
  zu::log::info("consumer", "main") << "hello";
}
