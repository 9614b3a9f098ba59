#pragma once

#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "support/ShellWord.h"

struct PrintedStack {
  unsigned long takerOffset = 0;  // Where the function that took it begins.
  std::vector<std::string> frames;
};

/// What a program printed, by the names of its stacks.
inline std::map<std::string, PrintedStack> RunProgram(const char* program) {
  std::string output;
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(Support::ShellWord(program).c_str(), "r"), pclose);
  std::array<char, 4096> piece;
  while (std::fgets(piece.data(), piece.size(), pipe.get()) != nullptr) output += piece.data();

  std::map<std::string, PrintedStack> stacks;
  std::istringstream lines(output);
  PrintedStack* current = nullptr;
  for (std::string line; std::getline(lines, line);) {
    for (const char* name : {"= before-main ", "= main ", "= at-exit "}) {
      if (!line.starts_with(name)) continue;
      current = &stacks[name];
      current->takerOffset = std::stoul(line.substr(std::string(name).size()), nullptr, 16);
      line.clear();
    }
    if (current != nullptr && !line.empty()) current->frames.push_back(line);
  }
  return stacks;
}
