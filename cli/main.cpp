// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/ky_command.h"

int main(int argc, char** argv) {
  return cli::run(argc, argv, std::cout, std::cerr);
}
