#include "run.h"

int main(int argc, char** argv) {
  return Lookout::run(argc, argv);
}
