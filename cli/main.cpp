// qpm, the command-line host of the Quillon project library.
#include <iostream>
#include <string>
#include <vector>

#include "cli/cli.h"

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  return quillon::qpm::RunQpm(args, std::cout, std::cerr);
}
