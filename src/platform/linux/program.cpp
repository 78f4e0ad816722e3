#include "platform/program.h"

int main(int count, char** arguments) {
  return rowvane::platform::program_main(count, arguments);
}
