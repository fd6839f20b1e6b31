// SPDX-License-Identifier: Apache-2.0
#include "run.h"

int main(int argc, char** argv) {
  return Lookout::run(argc, argv);
}
