// Writes the six data files into the folder that is given.

#include <filesystem>
#include <fstream>
#include <iostream>

#include "data_files.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: write_data FOLDER\n";
    return 2;
  }
  for (const auto& [name, content] : zelvion::dataFiles()) {
    std::ofstream file(std::filesystem::path(argv[1]) / name, std::ios::binary);
    file << content;
    file.close();
    if (!file) {
      std::cerr << "cannot write " << name << " into " << argv[1] << "\n";
      return 1;
    }
  }
}
