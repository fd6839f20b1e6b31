#include "zu/log.h"

int main() {
  zu::log::info("consumer", "main") << "hello";
}
