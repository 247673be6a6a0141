#include "Demo.h"

#include <iostream>
#include <string>

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "demo") return QuiltraTools::runDemo(std::cout);
  std::cerr << "usage: quiltra demo\n";
  return 2;
}
